#pragma once
// The note prints share one design, differing in the title's place, the grouping column
// and whether the group footer repeats it.
#include "reports/ReportLayout.h"

namespace reports::layouts {
ReportLayout notesReport(const char* name, const char* title, int titleLeft, const char* groupField,
                         bool footerNamesGroup);
}
