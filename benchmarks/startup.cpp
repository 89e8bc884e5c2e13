// What a first conversion adds to the start of a program, in processor time of fresh processes: a program that only
// makes Qt's application object beside one that then converts a colour.

#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double seconds(const timeval &time)
{
    return double(time.tv_sec) + 1e-6 * double(time.tv_usec);
}

/// Runs \a program without its messages. \return its processor time in seconds; negative where it did not succeed.
double cpuTimeOf(const char *program)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program;
    std::array<char *, 2> arguments = {name.data(), nullptr};
    pid_t child = 0;
    const bool isStarted = posix_spawn(&child, program, &actions, nullptr, arguments.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);

    int status = 0;
    rusage usage = {};
    if (!isStarted || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return -1;
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void startUp(benchmark::State &state, const char *program)
{
    if (cpuTimeOf(program) < 0) { // and the disk's cache is warm
        state.SkipWithError("the program failed");
        return;
    }
    for (auto _ : state)
        state.SetIterationTime(cpuTimeOf(program));
}
BENCHMARK_CAPTURE(startUp, library, TREL_FIRST_CONVERSION)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(startUp, bare, TREL_BARE_QT)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
