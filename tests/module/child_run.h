// Runs a piece of a test in a forked child process, so that the once-per-process state
// (environment switches, the module registry, the global context and its teardown) is
// fresh, and so that what the child writes at exit can be observed.
#ifndef ZU_TESTS_MODULE_CHILD_RUN_H
#define ZU_TESTS_MODULE_CHILD_RUN_H

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

struct ChildResult {
    int exitCode = -1;   // -1 when the child did not exit normally
    std::string output;  // stdout and stderr together, in the order written
};

// Environment changes for the child: a null value unsets the variable.
using ChildEnv = std::vector<std::pair<std::string, const char*>>;

// The child applies env, runs body and leaves through exit() with body's result, so that
// the atexit teardown runs; its stdout and stderr go to one file, read back here.
inline ChildResult runChild(const ChildEnv& env, const std::function<int()>& body) {
    char path[] = "/tmp/zu_child_XXXXXX";
    const int fd = mkstemp(path);
    ChildResult result;
    if (fd < 0)
        return result;
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(fd, 1);
        dup2(fd, 2);
        for (const auto& [name, value] : env)
            value ? setenv(name.c_str(), value, 1) : unsetenv(name.c_str());
        setvbuf(stdout, nullptr, _IONBF, 0);
        std::exit(body());
    }
    close(fd);
    int status = 0;
    if (pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status))
        result.exitCode = WEXITSTATUS(status);
    std::ifstream in(path);
    result.output.assign(std::istreambuf_iterator<char>(in), {});
    unlink(path);
    return result;
}

// In a child's body: reports the failed condition and leaves with exit code 1.
#define CHILD_CHECK(condition)                                                              \
    do {                                                                                    \
        if (!(condition)) {                                                                 \
            std::fprintf(stderr, "failed: %s (line %d)\n", #condition, __LINE__);           \
            return 1;                                                                       \
        }                                                                                   \
    } while (0)

// A fresh temporary directory, removed with its contents when the object goes.
class TempDir {
public:
    TempDir() {
        char pattern[] = "/tmp/zu_module_XXXXXX";
        _path = mkdtemp(pattern) ? pattern : "";
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& path() const { return _path; }
    std::string file(const std::string& name) const { return _path + "/" + name; }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(file(name)) << text;
    }

private:
    std::string _path;
};

#endif
