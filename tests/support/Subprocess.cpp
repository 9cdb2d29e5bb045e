#include "support/Subprocess.h"

#include <csignal>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace wicker::test {

Subprocess::Subprocess(const std::vector<std::string>& args) {
    int fds[2];
    if (::pipe(fds) != 0) {
        throw std::runtime_error("pipe failed");
    }
    std::vector<std::string> copy = args;
    std::vector<char*> argv;
    for (std::string& a : copy) {
        argv.push_back(a.data());
    }
    argv.push_back(nullptr);
    m_pid = ::fork();
    if (m_pid < 0) {
        throw std::runtime_error("fork failed");
    }
    if (m_pid == 0) {
        ::dup2(fds[1], STDOUT_FILENO);
        ::close(fds[0]);
        ::close(fds[1]);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(fds[1]);
    m_out = fds[0];
}

Subprocess::~Subprocess() {
    if (m_pid > 0) {
        killHard();
    }
    if (m_out >= 0) {
        ::close(m_out);
    }
}

std::optional<std::string> Subprocess::readLine(std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    for (;;) {
        if (const size_t nl = m_buffer.find('\n'); nl != std::string::npos) {
            std::string line = m_buffer.substr(0, nl);
            m_buffer.erase(0, nl + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd p{m_out, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&p, 1, static_cast<int>(left.count())) <= 0) {
            return std::nullopt;
        }
        char chunk[4096];
        const ssize_t n = ::read(m_out, chunk, sizeof chunk);
        if (n <= 0) {
            return std::nullopt;
        }
        m_buffer.append(chunk, static_cast<size_t>(n));
    }
}

bool Subprocess::waitFor(const std::string& line) {
    while (const auto got = readLine()) {
        if (*got == line) {
            return true;
        }
    }
    return false;
}

void Subprocess::killHard() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        wait();
    }
}

int Subprocess::wait() {
    if (m_pid <= 0) {
        return -1;
    }
    int status = 0;
    ::waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string FolderTool() {
#ifdef WICKER_FOLDER_TOOL
    return WICKER_FOLDER_TOOL;
#else
    throw std::runtime_error("this test program was built without the folder tool");
#endif
}

FolderToolRun RunFolderTool(std::vector<std::string> args) {
    args.insert(args.begin(), FolderTool());
    Subprocess tool(args);
    FolderToolRun run;
    while (const auto line = tool.readLine()) {
        std::istringstream in(*line);
        std::string word, id;
        ShownOrder o;
        if (in >> word >> id >> o.cum >> o.leaves && word == "order") {
            std::getline(in >> std::ws, o.status);
            run.orders[id] = o;
        } else {
            run.lines.push_back(*line);
        }
    }
    run.exitCode = tool.wait();
    return run;
}

bool Printed(const FolderToolRun& run, const std::string& prefix) {
    for (const std::string& line : run.lines) {
        if (line.starts_with(prefix)) {
            return true;
        }
    }
    return false;
}

} // namespace wicker::test
