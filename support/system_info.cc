#include "support/system_info.hh"

#include "support/console.hh"
#include "support/text.hh"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/statfs.h>
#include <sys/time.h>
#include <sys/times.h>
#include <unistd.h>

namespace {

constexpr int timer_signal = 26; ///< SIGVTALRM
constexpr long proc_magic = 0x9fa0;
constexpr int sample_seconds = 2;
constexpr const char *info_tag = "[System Info] ";

uint32_t sizeL = 0;  ///< total size in pages, the highest value seen
char statm_name[64]; ///< formed before the first signal, since a handler must not format

/// Takes one sample. Only calls that a signal handler may make, and errno is kept.
void uti_vt_handler(int) {
    int saved = errno;
    std::signal(timer_signal, uti_vt_handler);
    int file = ::open(statm_name, O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        char text[4096];
        ssize_t length = ::read(file, text, sizeof text - 1);
        ::close(file);
        text[length > 0 ? length : 0] = '\0';
        uint64_t value = 0;
        for (const char *at = text; *at >= '0' && *at <= '9'; at++)
            value = value * 10 + static_cast<uint64_t>(*at - '0');
        sizeL = std::max(sizeL, static_cast<uint32_t>(std::min<uint64_t>(value, UINT32_MAX)));
    }
    errno = saved;
}

} // namespace

int uti_prepare_system_info() {
    struct statfs proc;
    if (::statfs("/proc", &proc) != 0 || static_cast<long>(proc.f_type) != proc_magic)
        error_fail("proc filesystem not mounted on /proc\n");
    std::snprintf(statm_name, sizeof statm_name, "/proc/%d/statm", static_cast<int>(::getpid()));
    if (std::signal(timer_signal, uti_vt_handler) == SIG_ERR)
        error_fail("ERROR: can't sample the memory use (%s).\n", std::strerror(errno));
    const timeval interval = {sample_seconds, 0};
    const itimerval timer = {interval, interval};
    if (::setitimer(ITIMER_VIRTUAL, &timer, nullptr) != 0)
        error_fail("ERROR: can't start the virtual timer (%s).\n", std::strerror(errno));
    return 0;
}

int32_t uti_report_system_info(std::FILE *stream, int console) {
    ::raise(timer_signal);
    int32_t kilobytes =
        static_cast<int32_t>(std::min<int64_t>(int64_t{sizeL} << 2, INT32_MAX)); // pages of 4 kilobytes
    tms used;
    ::times(&used);
    long seconds =
        (used.tms_utime + used.tms_stime + used.tms_cutime + used.tms_cstime) / ::sysconf(_SC_CLK_TCK);
    const char *peak = format_k(kilobytes);
    std::string text = format_text("\n%s - Peak Memory Usage .......... %s.\n", info_tag, peak) +
                       format_text("%s - CPU Time Elapsed ........ %ld:%.2ld:%.2ld.\n\n", info_tag,
                                   seconds / 3600, seconds / 60 % 60, seconds % 60);
    for (std::FILE *to : {console != 0 ? stdout : nullptr, stream})
        if (to != nullptr)
            put_text(to, text);
    return kilobytes;
}

const char *format_k(int64_t kilobytes) {
    static char ring[8][16];
    static unsigned next = 0;
    char *text = ring[next++ % 8];
    const char *suffix = "K";
    for (const char *larger : {"M", "G"}) {
        if (kilobytes <= 9999)
            break;
        kilobytes = (kilobytes + 512) / 1024;
        suffix = larger;
    }
    std::snprintf(text, sizeof ring[0], "%lld%s", static_cast<long long>(kilobytes % 1000000000000LL),
                  suffix);
    return text;
}
