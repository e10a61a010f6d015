#include "Isolation.h"

#include <poll.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Loader.h"
#include "Wire.h"

namespace vekload {

using vekhost::seconds;

namespace {
FileReport failed(const std::string& file, const std::string& cause) {
    FileReport report;
    report.file = file;
    report.error = cause;
    return report;
}

void writeAll(int fd, const std::string& data) {
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t written = write(fd, data.data() + done, data.size() - done);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        done += static_cast<std::size_t>(written);
    }
}

[[noreturn]] void runChild(int fd, const std::string& file,
                           const std::function<FileReport()>& work) {
    // A fault inside a reader ends this process quietly; the parent reports it in one line.
    // Sanitizer reports of real memory errors still come through, they end in abort().
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, SIG_DFL);
    FileReport report;
    try {
        report = work();
    } catch (const std::exception& failure) {
        report = failed(file, failure.what());
    }
    writeAll(fd, serialize(report));
    close(fd);
    // Nothing of the parent's (static destructors, its stdio buffers) runs twice.
    _exit(0);
}
} // namespace

FileReport runIsolated(const std::string& file, const std::function<FileReport()>& work,
                       double timeoutSeconds) {
    int fds[2];
    if (pipe(fds) != 0) return work();
    std::fflush(stdout);
    std::fflush(stderr);
    const pid_t child = fork();
    if (child < 0) {
        close(fds[0]);
        close(fds[1]);
        return work();
    }
    if (child == 0) {
        close(fds[0]);
        runChild(fds[1], file, work);
    }
    close(fds[1]);

    std::string data;
    bool timedOut = false;
    const double deadline = seconds() + timeoutSeconds;
    for (;;) {
        const double left = deadline - seconds();
        if (left <= 0) {
            timedOut = true;
            break;
        }
        pollfd wait{fds[0], POLLIN, 0};
        const int ready = poll(&wait, 1, static_cast<int>(left * 1000) + 1);
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) continue;
        char buffer[65536];
        const ssize_t got = read(fds[0], buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) break;
        data.append(buffer, static_cast<std::size_t>(got));
    }
    close(fds[0]);
    if (timedOut) kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }

    if (timedOut) {
        char cause[64];
        std::snprintf(cause, sizeof cause, "gave up after %g s", timeoutSeconds);
        return failed(file, cause);
    }
    if (WIFSIGNALED(status))
        return failed(file,
                      std::string("the reader crashed (") + strsignal(WTERMSIG(status)) + ")");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || data.empty())
        return failed(file, "the reader process ended without a report (exit status " +
                                std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + ")");
    return deserialize(data);
}

} // namespace vekload
