// Stands in for an outside program and does what TAVEL_STAND_IN says, or else its first argument.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace {

std::string environmentValue(const char *name)
{
    const char *value = std::getenv(name);
    return value ? value : "";
}

/** Adds a line to the file that TAVEL_STAND_IN_RECORD names. */
void record(const std::string &line)
{
    std::ofstream(environmentValue("TAVEL_STAND_IN_RECORD"), std::ios::app) << line << '\n';
}

void recordCall(int argc, char **argv)
{
    char folder[4096] = "";
    record(getcwd(folder, sizeof folder) ? folder : "?");
    for (int i = 1; i < argc; ++i)
        record(argv[i]);
}

[[noreturn]] void hang()
{
    for (;;)
        pause();
}

/** Starts a process that hangs, in a session of its own or not, and records its number. */
void startHangingChild(bool hasOwnSession)
{
    int ready[2];
    if (pipe(ready) != 0)
        std::abort();
    if (fork() == 0) {
        if (hasOwnSession)
            setsid();
        record(std::to_string(getpid()));
        (void)!write(ready[1], "x", 1);
        hang();
    }
    char byte = 0;
    (void)!read(ready[0], &byte, 1);
}

/** The argument behind a switch. */
std::string argumentOf(const char *name, int argc, char **argv)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], name) == 0)
            return argv[i + 1];
    }
    return {};
}

/** Writes where an office writes, or pandoc, to which its arguments tell it. */
void writeResult(int argc, char **argv)
{
    const std::string filter = argumentOf("--convert-to", argc, argv);
    const std::string path = filter.empty()
        ? argumentOf("-o", argc, argv)
        : argumentOf("--outdir", argc, argv) + "/source." + filter.substr(0, filter.find(':'));
    std::ofstream(path) << (argumentOf("-t", argc, argv) == "json" ? "{}" : "converted");
}

int act(const std::string &mode, int argc, char **argv)
{
    if (mode == "record" || mode == "leave") {
        recordCall(argc, argv);
        if (mode == "leave")
            startHangingChild(false);
        std::ofstream(argv[argc - 1]) << "converted";
        return 0;
    }
    if (mode == "convert") {
        recordCall(argc, argv);
        writeResult(argc, argv);
        return 0;
    }
    if (mode == "place") {
        record(environmentValue("TMPDIR"));
        writeResult(argc, argv);
        return 0;
    }
    if (mode == "hang") {
        record(std::to_string(getpid()));
        startHangingChild(false);
        startHangingChild(true);
        std::ofstream(argv[argc - 1]) << "half";
        hang();
    }
    if (mode == "ignore") {
        std::signal(SIGTERM, SIG_IGN);
        startHangingChild(true);
        hang();
    }
    if (mode == "mute") {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        hang();
    }
    if (mode == "endless") {
        for (;;)
            std::puts("and so on and so forth and so on and so forth and so on and so forth");
    }
    if (mode == "die")
        raise(SIGKILL);
    if (mode == "listen")
        return std::getchar() == EOF ? 0 : 1;
    if (mode == "complain") {
        std::fputs("out of ink\n", stderr);
        return std::atoi(argv[argc - 1]);
    }
    return mode == "silent" ? 0 : 99;
}

} // namespace

int main(int argc, char **argv)
{
    const std::string mode = environmentValue("TAVEL_STAND_IN");
    return act(mode.empty() && argc > 1 ? argv[1] : mode, argc, argv);
}
