#include "traced.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef __x86_64__
#error "the numbers of system calls and the registers here are those of x86-64"
#endif

namespace norvakavlor::torture {
namespace {

/// The calls that have to do with files, and may fail for the disk's sake.
const std::map<long, const char*>& fileCalls() {
    static const std::map<long, const char*> calls = {
        {SYS_open, "open"},
        {SYS_openat, "openat"},
        {SYS_creat, "creat"},
        {SYS_read, "read"},
        {SYS_pread64, "pread"},
        {SYS_write, "write"},
        {SYS_pwrite64, "pwrite"},
        {SYS_fsync, "fsync"},
        {SYS_fdatasync, "fdatasync"},
        {SYS_close, "close"},
        {SYS_stat, "stat"},
        {SYS_lstat, "lstat"},
        {SYS_fstat, "fstat"},
        {SYS_newfstatat, "newfstatat"},
        {SYS_statx, "statx"},
        {SYS_rename, "rename"},
        {SYS_renameat, "renameat"},
        {SYS_renameat2, "renameat2"},
        {SYS_link, "link"},
        {SYS_linkat, "linkat"},
        {SYS_unlink, "unlink"},
        {SYS_unlinkat, "unlinkat"},
        {SYS_chmod, "chmod"},
        {SYS_fchmod, "fchmod"},
        {SYS_fchown, "fchown"},
        {SYS_ftruncate, "ftruncate"},
        {SYS_fcntl, "fcntl"},
        {SYS_flock, "flock"},
        {SYS_getdents64, "getdents64"},
        {SYS_access, "access"},
        {SYS_faccessat, "faccessat"},
        {439, "faccessat2"},
        {SYS_mkdir, "mkdir"},
        {SYS_mkdirat, "mkdirat"},
        {SYS_lseek, "lseek"},
        {SYS_readlink, "readlink"},
    };
    return calls;
}

/// A call that nobody makes tells that the step begins.
constexpr long kBeginning = 100000;

user_regs_struct registersOf(pid_t child) {
    user_regs_struct registers{};
    ::ptrace(PTRACE_GETREGS, child, nullptr, &registers);
    return registers;
}

bool counts(const user_regs_struct& registers, bool filesOnly) {
    const auto number = static_cast<long>(registers.orig_rax);
    // What the step reports goes through the standard output.
    if (number == SYS_write && registers.rdi == STDOUT_FILENO)
        return !filesOnly;
    return !filesOnly || fileCalls().contains(number);
}

[[noreturn]] void runStep(const std::function<int()>& step, int output) {
    ::dup2(output, STDOUT_FILENO);
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
    ::syscall(kBeginning);
    ::_exit(step());
}

/// Goes to the next stop at a call; False when the child has ended, `status` says how.
bool goOn(pid_t child, int& status) {
    ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    return ::waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

} // namespace

Outcome runDisturbed(const std::function<int()>& step, const Disturbance& disturbance) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0)
        runStep(step, ends[1]);
    ::close(ends[1]);
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFSTOPPED(status))
        throw std::runtime_error("processes cannot be traced here");
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);

    Outcome outcome;
    bool hasBegun = false;
    bool isEntry = false;
    int number = 0;
    while (goOn(child, status)) {
        if (WSTOPSIG(status) != (SIGTRAP | 0x80))
            continue;
        isEntry = !isEntry;
        if (!isEntry)
            continue;
        user_regs_struct registers = registersOf(child);
        if (static_cast<long>(registers.orig_rax) == kBeginning)
            hasBegun = true;
        else if (hasBegun && counts(registers, disturbance.filesOnly) && ++number == disturbance.call) {
            const auto known = fileCalls().find(static_cast<long>(registers.orig_rax));
            outcome.wasDisturbed = true;
            outcome.call = known == fileCalls().end() ? std::to_string(registers.orig_rax) : known->second;
            if (disturbance.kills) {
                ::kill(child, SIGKILL);
                continue;
            }
            registers.orig_rax = static_cast<unsigned long long>(-1); // so that it is not made
            ::ptrace(PTRACE_SETREGS, child, nullptr, &registers);
            if (!goOn(child, status))
                break;
            isEntry = false;
            registers = registersOf(child);
            registers.rax = static_cast<unsigned long long>(-disturbance.failure);
            ::ptrace(PTRACE_SETREGS, child, nullptr, &registers);
        }
    }
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::array<char, 4096> piece{};
    for (ssize_t count = 0; (count = ::read(ends[0], piece.data(), piece.size())) > 0;)
        outcome.said.append(piece.data(), static_cast<size_t>(count));
    ::close(ends[0]);
    return outcome;
}

} // namespace norvakavlor::torture
