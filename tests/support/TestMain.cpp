// Test entry point: a QApplication for the screens, and any Qt warning fails the test
// that printed it.
#include <QApplication>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
void failOnQtWarnings(QtMsgType type, const QMessageLogContext&, const QString& msg)
{
    if (type == QtDebugMsg || type == QtInfoMsg) {
        fprintf(stderr, "%s\n", qPrintable(msg));
        return;
    }
    // The offscreen platform's own note on window hints says nothing about the program.
    if (msg.startsWith(QLatin1String("This plugin does not support")))
        return;
    ADD_FAILURE() << "Qt printed: " << msg.toStdString();
}
} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    if (qgetenv("XDG_RUNTIME_DIR").isEmpty()) {
        const QByteArray dir = "/tmp/velmora-test-runtime-" + QByteArray::number(getuid());
        mkdir(dir.constData(), 0700);
        qputenv("XDG_RUNTIME_DIR", dir);
    }
    QApplication app(argc, argv);
    qInstallMessageHandler(failOnQtWarnings);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
