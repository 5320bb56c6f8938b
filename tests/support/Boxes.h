#pragma once
// One assertion for a message box: its title, its prompt and its flags (buttons plus
// icon, vb::mb::YesNo + vb::mb::Question...) in one line, all three told on a failure.

#include "runtime/MsgBox.h"

#include <QString>

#include <gtest/gtest.h>

namespace kit {

::testing::AssertionResult boxIs(const char* boxText, const char*, const char*, const char*, const vb::ShownBox& box,
                                 const QString& title, const QString& prompt, int flags);

} // namespace kit

/// EXPECT_BOX(oneBox(), "MANCANZA DATI", "Inserisci i dati Richiesti!", vb::mb::Exclamation);
#define EXPECT_BOX(box, title, prompt, flags) EXPECT_PRED_FORMAT4(kit::boxIs, box, title, prompt, flags)
