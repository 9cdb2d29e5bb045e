#include "exchange/ExchangeProcess.h"

#include <csignal>
#include <fstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace wicker {

ExchangeProcess::ExchangeProcess(std::filesystem::path program, std::filesystem::path folder)
    : m_program(std::move(program)), m_folder(std::move(folder)) {}

ExchangeProcess::~ExchangeProcess() {
    kill();
}

Result<void> ExchangeProcess::start(const std::vector<std::string>& options, int port,
                                    std::chrono::milliseconds limit) {
    if (running()) {
        return Error{"wicker-exchange is already running."};
    }
    std::error_code ec;
    std::filesystem::create_directories(m_folder, ec);
    const std::filesystem::path portFile = m_folder / "exchange.port";
    std::filesystem::remove(portFile, ec);
    if (port == 0) {
        port = m_port;
    }
    std::vector<std::string> args{m_program.string(), "--port", std::to_string(port), "--port-file",
                                  portFile.string()};
    args.insert(args.end(), options.begin(), options.end());
    std::vector<char*> argv;
    for (std::string& a : args) {
        argv.push_back(a.data());
    }
    argv.push_back(nullptr);

    const pid_t pid = ::fork();
    if (pid < 0) {
        return Error{"Cannot start wicker-exchange."};
    }
    if (pid == 0) {
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    m_pid = pid;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        std::ifstream in(portFile);
        int listened = 0;
        if (in >> listened && listened > 0) {
            m_port = listened;
            return {};
        }
        int status = 0;
        if (::waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1;
            return Error{"wicker-exchange stopped at start (status " + std::to_string(status) +
                         ")."};
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill();
    return Error{"wicker-exchange did not start listening in time."};
}

void ExchangeProcess::kill() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        int status = 0;
        ::waitpid(m_pid, &status, 0);
        m_pid = -1;
    }
}

int ExchangeProcess::terminate() {
    if (m_pid <= 0) {
        return -1;
    }
    ::kill(m_pid, SIGTERM);
    int status = 0;
    ::waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace wicker
