/* A filter of system calls, by the kernel's own interface. What it lists fails with "not
 * permitted"; all else goes on, as libraries begin to use new calls. */
#include "cli/run/confinement.h"

#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace mtranslate {

namespace {

#if defined(__x86_64__)
constexpr std::uint32_t PROCESSOR = AUDIT_ARCH_X86_64;
constexpr std::uint32_t FIRST_OF_X32 = 0x40000000;  // the same calls by other numbers
#elif defined(__aarch64__)
constexpr std::uint32_t PROCESSOR = AUDIT_ARCH_AARCH64;
#endif

constexpr int DENIED[] = {
    // the network
    SYS_socket,
    SYS_socketpair,
    SYS_connect,
    SYS_bind,
    SYS_listen,
    SYS_accept,
    SYS_accept4,
    // other processes
    SYS_ptrace,
    SYS_process_vm_readv,
    SYS_process_vm_writev,
    SYS_tkill,
    SYS_rt_sigqueueinfo,
    SYS_rt_tgsigqueueinfo,
#ifdef SYS_pidfd_open
    SYS_pidfd_open,
    SYS_pidfd_send_signal,
    SYS_pidfd_getfd,
#endif
    // ways around this filter, and around the names of files
    SYS_io_uring_setup,
    SYS_io_uring_enter,
    SYS_io_uring_register,
    SYS_open_by_handle_at,
    SYS_userfaultfd,
    // the system
    SYS_mount,
    SYS_umount2,
    SYS_pivot_root,
    SYS_chroot,
    SYS_unshare,
    SYS_setns,
    SYS_bpf,
    SYS_perf_event_open,
    SYS_add_key,
    SYS_request_key,
    SYS_keyctl,
    SYS_init_module,
    SYS_finit_module,
    SYS_delete_module,
    SYS_kexec_load,
    SYS_reboot,
    SYS_swapon,
    SYS_swapoff,
    SYS_acct,
    SYS_quotactl,
    SYS_settimeofday,
    SYS_clock_settime,
    SYS_adjtimex,
    SYS_sethostname,
    SYS_setdomainname,
    SYS_personality,
};

constexpr int NEW_PROGRAMS[] = {
    SYS_execve, SYS_execveat, SYS_clone, SYS_clone3,
#ifdef SYS_fork
    SYS_fork,   SYS_vfork,
#endif
};

/* Allowed for a process to itself, as raise and abort need them. */
constexpr int SIGNALS[] = {SYS_kill, SYS_tgkill};

constexpr std::uint32_t REFUSE = SECCOMP_RET_ERRNO | EPERM;

class Filter {
public:
    explicit Filter(Programs programs) {
#if defined(__x86_64__) || defined(__aarch64__)
        load(offsetof(seccomp_data, arch));
        unless(PROCESSOR, SECCOMP_RET_KILL_PROCESS);
        load(offsetof(seccomp_data, nr));
#ifdef __x86_64__
        steps_.push_back(BPF_JUMP(BPF_JMP | BPF_JGE | BPF_K, FIRST_OF_X32, 0, 1));
        answer(REFUSE);
#endif
        for (const int call : DENIED) where(static_cast<std::uint32_t>(call), REFUSE);
        if (programs == Programs::NotRun)
            for (const int call : NEW_PROGRAMS) where(static_cast<std::uint32_t>(call), REFUSE);
        for (const int call : SIGNALS) keep_to_itself(static_cast<std::uint32_t>(call));
        answer(SECCOMP_RET_ALLOW);
#else
        static_cast<void>(programs);
#endif
    }

    void install() {
        sock_fprog program{static_cast<unsigned short>(steps_.size()), steps_.data()};
        if (!steps_.empty()) prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
    }

private:
    void load(std::size_t offset) {
        steps_.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<std::uint32_t>(offset)));
    }
    void answer(std::uint32_t what) { steps_.push_back(BPF_STMT(BPF_RET | BPF_K, what)); }
    void where(std::uint32_t value, std::uint32_t what) {
        steps_.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, 1));
        answer(what);
    }
    void unless(std::uint32_t value, std::uint32_t what) {
        steps_.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 1, 0));
        answer(what);
    }

    /* The process is the first argument, of which the processors above have the low half first. */
    void keep_to_itself(std::uint32_t call) {
        steps_.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 4));
        load(offsetof(seccomp_data, args));
        unless(static_cast<std::uint32_t>(getpid()), REFUSE);
        answer(SECCOMP_RET_ALLOW);
    }

    std::vector<sock_filter> steps_;
};

}  // namespace

void confine(Programs programs) {
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0) Filter(programs).install();
}

}  // namespace mtranslate
