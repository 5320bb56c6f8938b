#pragma once
// What the whole-program benchmarks share: running a program as a process of its own,
// timed from its start to its end, its peak resident memory read from the kernel.

#include <QByteArray>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace bench {

struct ProcessRun
{
    double ms = 0;     ///< from the spawn to the reaping of the process
    double cpuMs = 0;  ///< its processor time, user and system
    double peakMb = 0; ///< the kernel's high-water mark of its resident memory
    int exitCode = -1;
    QByteArray output; ///< its standard output
};

/// A program built beside the benchmarks: "velmora" one folder up, the baselines here.
inline QString builtProgram(const QString& name)
{
    const QString dir = QCoreApplication::applicationDirPath();
    return name == QLatin1String("velmora") ? dir + QStringLiteral("/../velmora") : dir + QLatin1Char('/') + name;
}

/// Runs program with args, input written to its standard input, and waits for its end.
inline ProcessRun runProcess(const QString& program, const QStringList& args, const QByteArray& input = {})
{
    ProcessRun run;
    int in[2], out[2];
    if (pipe(in) != 0)
        return run;
    if (pipe(out) != 0) {
        close(in[0]);
        close(in[1]);
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], 0);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    for (int fd : {in[0], in[1], out[0], out[1]})
        posix_spawn_file_actions_addclose(&actions, fd);
    std::vector<QByteArray> words{program.toLocal8Bit()};
    for (const QString& a : args)
        words.push_back(a.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& w : words)
        argv.push_back(w.data());
    argv.push_back(nullptr);

    QElapsedTimer timer;
    timer.start();
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    if (spawned != 0) {
        close(in[1]);
        close(out[0]);
        std::fprintf(stderr, "cannot start %s\n", argv[0]);
        return run;
    }
    // The scripts are short: they fit in the pipe, and the answers are read after.
    if (!input.isEmpty() && write(in[1], input.constData(), size_t(input.size())) < 0)
        std::fprintf(stderr, "cannot write to %s\n", argv[0]);
    close(in[1]);
    char buf[4096];
    for (ssize_t n; (n = read(out[0], buf, sizeof buf)) > 0;)
        run.output.append(buf, n);
    close(out[0]);
    int status = 0;
    rusage usage{};
    wait4(pid, &status, 0, &usage);
    run.ms = double(timer.nsecsElapsed()) / 1e6;
    run.cpuMs = (double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e6 + double(usage.ru_utime.tv_usec) +
                 double(usage.ru_stime.tv_usec)) /
                1e3;
    run.peakMb = double(usage.ru_maxrss) / 1024.0;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

/// The best of runs runs: the shortest time and the smallest peak (other programs on
/// the machine only ever add to either).
inline ProcessRun bestRun(int runs, const QString& program, const QStringList& args, const QByteArray& input = {})
{
    ProcessRun best;
    for (int i = 0; i < runs; ++i) {
        const ProcessRun r = runProcess(program, args, input);
        if (i == 0 || r.ms < best.ms) {
            const double peak = i == 0 ? r.peakMb : std::min(best.peakMb, r.peakMb);
            best = r;
            best.peakMb = peak;
        } else {
            best.peakMb = std::min(best.peakMb, r.peakMb);
        }
    }
    return best;
}

/// One line of the benchmarks' table, in the form scripts/bench.sh reads.
inline void tableRow(const QString& title, double ours, double baseline, const char* unit)
{
    if (baseline > 0)
        std::printf("row: %s | %.1f %s | %.1f %s\n", qPrintable(title), ours, unit, baseline, unit);
    else
        std::printf("row: %s | %.1f %s | -\n", qPrintable(title), ours, unit);
}

} // namespace bench
