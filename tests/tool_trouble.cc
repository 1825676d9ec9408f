/* Preloaded into the tool: the system call that TROUBLE names goes wrong, where AT is set for paths
 * that end by it alone, and where AFTER is set when as many calls have been made. */
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static bool is_troubled(const char *call) {
    const char *troubled = getenv("TROUBLE");
    return troubled && strcmp(troubled, call) == 0;
}

static bool is_at(const char *path) {
    const char *end = getenv("AT");
    return !end ||
           (strlen(path) >= strlen(end) && strcmp(path + strlen(path) - strlen(end), end) == 0);
}

/* Of a call that goes well first. */
static bool is_over(const char *call) {
    static int calls = 0;
    const char *after = getenv("AFTER");
    return is_troubled(call) && calls++ >= (after ? atoi(after) : 0);
}

/* What the library of C has for it, for a call that is none of the system. */
template <class Function>
static Function next(const char *name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/* The call, or a failure for the reason. */
template <typename... Arguments>
static int attempt(const char *call, int reason, long number, Arguments... arguments) {
    if (!is_troubled(call)) return static_cast<int>(syscall(number, arguments...));
    errno = reason;
    return -1;
}

/* Says once which of the things that no worker needs this process may do. */
static void try_rights() {
    static bool has_tried = false;
    if (has_tried) return;
    has_tried = true;
    const auto say = [](const char *what, long result) {
        const bool may = result >= 0 || errno != EPERM;
        dprintf(STDERR_FILENO, "%s %s\n", what, may ? "yes" : "no");
    };
    say("network", socket(AF_INET, SOCK_STREAM, 0));
    say("programs", execl("no-program", "no-program", nullptr));
    say("others", kill(getppid(), 0));
    say("itself", kill(getpid(), 0));
    say("memory of others", ptrace(PTRACE_ATTACH, -1, nullptr, nullptr));
}

extern "C" {

int open(const char *path, int flags, ...) {
    if ((flags & O_TMPFILE) == O_TMPFILE && is_troubled("unnamed")) {
        errno = EOPNOTSUPP;
        return -1;
    }
    if (is_troubled("rights") && is_at(path)) try_rights();
    return attempt(is_at(path) ? "open" : "", EMFILE, SYS_openat, AT_FDCWD, path, flags, 0666);
}

int stat(const char *path, struct stat *status) {
    return attempt(is_at(path) ? "stat" : "", EIO, SYS_newfstatat, AT_FDCWD, path, status, 0);
}

int fchown(int file, uid_t owner, gid_t group) {
    return attempt("fchown", EPERM, SYS_fchown, file, owner, group);
}

/* Or never comes to an end, whatever signal says so. */
int rename(const char *from, const char *to) {
    sigset_t all;
    sigfillset(&all);
    if (is_troubled("end")) sigprocmask(SIG_BLOCK, &all, nullptr);
    while (is_troubled("end")) sigsuspend(&all);
    return attempt("rename", EBUSY, SYS_rename, from, to);
}

/* A signal comes while the file is not yet in its place; SIGNAL is its number. */
int fsync(int file) {
    if (const char *number = getenv("SIGNAL")) raise(atoi(number));
    return attempt("fsync", EIO, SYS_fsync, file);
}

int prctl(int what, ...) {
    va_list rest;
    va_start(rest, what);
    const auto first = va_arg(rest, unsigned long);
    const auto second = va_arg(rest, unsigned long);
    va_end(rest);
    return attempt("prctl", EINVAL, SYS_prctl, what, first, second, 0, 0);
}

DIR *opendir(const char *path) {
    const bool fails = is_troubled("opendir") && is_at(path);
    if (fails) errno = EIO;
    return fails ? nullptr : next<DIR *(*)(const char *)>("opendir")(path);
}

dirent *readdir(DIR *folder) {
    const bool fails = is_over("readdir");
    if (fails) errno = EIO;
    return fails ? nullptr : next<dirent *(*)(DIR *)>("readdir")(folder);
}

pid_t fork() {
    errno = EAGAIN;
    return is_over("fork") ? -1 : next<pid_t (*)()>("fork")();
}

ssize_t send(int socket, const void *bytes, size_t size, int flags) {
    errno = ENOBUFS;
    return is_over("send") ? -1 : sendto(socket, bytes, size, flags, nullptr, 0);
}
}
