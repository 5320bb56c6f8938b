#pragma once
/// @file Driver.h
/// The automation driver: the program driven by a line protocol (docs/automation.md).
/// One command a line in, one JSON line out; screens and controls are found by name
/// through the screen registry and read and written through the control classes'
/// properties, so a new screen needs no code here.

#include <QObject>
#include <QString>

#include <cstdio>
#include <deque>
#include <vector>

namespace shell {

class Driver : public QObject
{
public:
    /// @param source a file of commands, or "-" for standard input
    explicit Driver(const QString& source = QStringLiteral("-"));
    ~Driver() override;

    /// Drive mode: scripted boxes, recorded file openings, manual timers, and the end of
    /// the program (also by an error no trap caught) kept from ending the driver. Called
    /// by the constructor.
    static void setUpServices();

    /// Sends the answers to @p out instead of standard output (tests); nothing is
    /// redirected then.
    void setOutput(FILE* out)
    {
        m_out = out;
        m_ownOutput = false;
    }

    /// Reads and runs every command inside Qt's event loop, until the end of the input or
    /// `quit`; returns the process's exit code. Standard output gets the answers only.
    int run();

    /// Runs one command now and returns its JSON answer (one line, no line end).
    QString execute(const QString& line);

private:
    void enqueue(const QString& line);
    void endOfInput();
    void pump();
    void schedulePump();
    void watch(quint64 id);
    void answer(const QString& json);
    void finish();
    /// After a command: when the program ended (close, lblExit), its screens go.
    void afterCommand();

    struct Frame
    {
        quint64 id;
        int loopLevel;
        bool answered = false;
    };
    QString m_source;
    std::deque<QString> m_queue;
    std::vector<Frame> m_frames;
    quint64 m_nextId = 1;
    bool m_eof = false;
    bool m_finished = false;
    bool m_quit = false;
    bool m_pumpScheduled = false;
    FILE* m_out = nullptr;
    bool m_ownOutput = true;
    class Reader;
    Reader* m_reader = nullptr;
};

} // namespace shell
