#include <array>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

// Preloaded into the worker: lets a chosen call on the user's folder fail, and counts such calls. Nothing happens
// until faultShimArm(), and nothing ever to calls on other files. One thread only, as the library has.

#define SHIM_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

struct Plan
{
    bool isArmed = false;
    bool isLasting = false;         ///< from then on, not once
    long at = 0;                    ///< the first call to strike, from 1
    int error = 0;                  ///< 0 for short writes without an error behind them
    std::array<char, 16> call = {}; ///< the kind of call
    std::array<char, PATH_MAX> folder = {};
    long calls = 0;
    long struck = 0;
};

Plan s_plan;

/// By descriptor: whether there are bytes written that no sync has taken to the disk. One without any has nothing to
/// refuse.
std::array<bool, 4096> s_isDirty = {};

void setDirty(int descriptor, bool isDirty)
{
    if (descriptor >= 0 && size_t(descriptor) < s_isDirty.size())
        s_isDirty[size_t(descriptor)] = isDirty;
}

bool isDirty(int descriptor)
{
    return descriptor >= 0 && size_t(descriptor) < s_isDirty.size() && s_isDirty[size_t(descriptor)];
}

template <typename Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

bool isOurs(const char *path)
{
    return path && std::strncmp(path, s_plan.folder.data(), std::strlen(s_plan.folder.data())) == 0;
}

std::string pathOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, PATH_MAX> path = {};
    return readlink(link.c_str(), path.data(), path.size() - 1) > 0 ? path.data() : "";
}

bool isOurs(int descriptor)
{
    return isOurs(pathOf(descriptor).c_str());
}

bool isLock(int descriptor)
{
    return pathOf(descriptor).find(".lock") != std::string::npos;
}

/// Counts one call of kind \a call on \a file. \return whether it is to be struck.
template <typename File>
bool isStruck(const char *call, File file)
{
    if (!s_plan.isArmed || std::strcmp(call, s_plan.call.data()) != 0 || !isOurs(file))
        return false;
    ++s_plan.calls;
    const bool isStruck = s_plan.calls == s_plan.at || (s_plan.isLasting && s_plan.calls > s_plan.at);
    s_plan.struck += isStruck ? 1 : 0;
    return isStruck;
}

/// isStruck(), with errno set for a call that then returns −1.
template <typename File>
bool fails(const char *call, File file)
{
    if (!isStruck(call, file))
        return false;
    errno = s_plan.error;
    return true;
}

int openWith(const char *name, const char *path, int flags, mode_t mode)
{
    using Open = int(const char *, int, ...);
    return fails("open", path) ? -1 : original<Open>(name)(path, flags, mode);
}

int openAtWith(const char *name, int folder, const char *path, int flags, mode_t mode)
{
    using OpenAt = int(int, const char *, int, ...);
    return fails("open", path) ? -1 : original<OpenAt>(name)(folder, path, flags, mode);
}

/// The optional argument of open().
mode_t modeFrom(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

/// How many of \a count bytes go out: as many, or in a short write half of them, or none but the error.
/// \return false for none.
bool admits(int descriptor, size_t &count)
{
    if (fails("write", descriptor))
        return false;
    if (!isStruck("short", descriptor))
        return true;
    if (s_plan.struck > 1 && s_plan.error != 0) {
        errno = s_plan.error;
        return false;
    }
    count = count > 1 ? count / 2 : count;
    return true;
}

/// The result of a write, \a count as admitted.
template <typename Write>
ssize_t writeWith(int descriptor, size_t count, Write write)
{
    if (!admits(descriptor, count))
        return -1;
    const ssize_t written = write(count);
    if (written > 0)
        setDirty(descriptor, true);
    return written;
}

/// What a disk refuses of the lock costs no colour, so that it is a kind of its own.
bool failsSync(int descriptor)
{
    if (isLock(descriptor))
        return fails("locksync", descriptor);
    return isDirty(descriptor) && fails("sync", descriptor);
}

int syncWith(const char *name, int descriptor)
{
    if (failsSync(descriptor))
        return -1;
    const int result = original<int(int)>(name)(descriptor);
    if (result == 0)
        setDirty(descriptor, false);
    return result;
}

} // namespace

SHIM_EXPORT void faultShimArm(const char *folder, const char *call, long at, int error, int isLasting)
{
    s_plan = Plan();
    std::snprintf(s_plan.folder.data(), s_plan.folder.size(), "%s", folder);
    std::snprintf(s_plan.call.data(), s_plan.call.size(), "%s", call);
    s_plan.at = at;
    s_plan.error = error;
    s_plan.isLasting = isLasting != 0;
    s_plan.isArmed = true;
}

/// \return how many calls were struck. \param calls receives how many there were of the kind.
SHIM_EXPORT long faultShimDisarm(long *calls)
{
    s_plan.isArmed = false;
    *calls = s_plan.calls;
    return s_plan.struck;
}

SHIM_EXPORT int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openWith("open", path, flags, mode);
}

SHIM_EXPORT int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openWith("open64", path, flags, mode);
}

SHIM_EXPORT int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openAtWith("openat", folder, path, flags, mode);
}

SHIM_EXPORT int openat64(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFrom(flags, arguments);
    va_end(arguments);
    return openAtWith("openat64", folder, path, flags, mode);
}

SHIM_EXPORT ssize_t read(int descriptor, void *bytes, size_t count)
{
    return fails("read", descriptor) ? -1 : original<decltype(read)>("read")(descriptor, bytes, count);
}

SHIM_EXPORT ssize_t write(int descriptor, const void *bytes, size_t count)
{
    return writeWith(descriptor, count,
                     [&](size_t admitted) { return original<decltype(write)>("write")(descriptor, bytes, admitted); });
}

SHIM_EXPORT ssize_t sendfile(int to, int from, off_t *offset, size_t count) noexcept
{
    return writeWith(to, count, [&](size_t admitted) {
        return original<decltype(sendfile)>("sendfile")(to, from, offset, admitted);
    });
}

SHIM_EXPORT ssize_t sendfile64(int to, int from, off64_t *offset, size_t count) noexcept
{
    return writeWith(to, count, [&](size_t admitted) {
        return original<decltype(sendfile64)>("sendfile64")(to, from, offset, admitted);
    });
}

SHIM_EXPORT int fsync(int descriptor)
{
    return syncWith("fsync", descriptor);
}

SHIM_EXPORT int fdatasync(int descriptor)
{
    return syncWith("fdatasync", descriptor);
}

SHIM_EXPORT int rename(const char *from, const char *to) noexcept
{
    return fails("rename", to) ? -1 : original<int(const char *, const char *)>("rename")(from, to);
}

SHIM_EXPORT int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept
{
    using RenameAt = int(int, const char *, int, const char *);
    return fails("rename", to) ? -1 : original<RenameAt>("renameat")(fromFolder, from, toFolder, to);
}

SHIM_EXPORT int renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned flags) noexcept
{
    using RenameAt2 = int(int, const char *, int, const char *, unsigned);
    return fails("rename", to) ? -1 : original<RenameAt2>("renameat2")(fromFolder, from, toFolder, to, flags);
}

SHIM_EXPORT int link(const char *from, const char *to) noexcept
{
    return fails("link", to) ? -1 : original<int(const char *, const char *)>("link")(from, to);
}

SHIM_EXPORT int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    using LinkAt = int(int, const char *, int, const char *, int);
    return fails("link", to) ? -1 : original<LinkAt>("linkat")(fromFolder, from, toFolder, to, flags);
}

SHIM_EXPORT int unlink(const char *path) noexcept
{
    return fails("unlink", path) ? -1 : original<int(const char *)>("unlink")(path);
}

/// As on Linux, a close that fails has closed the file all the same.
SHIM_EXPORT int close(int descriptor)
{
    const bool isFailure = isStruck("close", descriptor);
    const int result = original<decltype(close)>("close")(descriptor);
    setDirty(descriptor, false);
    if (!isFailure)
        return result;
    errno = s_plan.error;
    return -1;
}

SHIM_EXPORT int flock(int descriptor, int operation) noexcept
{
    return fails("lock", descriptor) ? -1 : original<int(int, int)>("flock")(descriptor, operation);
}

SHIM_EXPORT int fchmod(int descriptor, mode_t mode) noexcept
{
    return fails("chmod", descriptor) ? -1 : original<int(int, mode_t)>("fchmod")(descriptor, mode);
}

SHIM_EXPORT int chmod(const char *path, mode_t mode) noexcept
{
    return fails("chmod", path) ? -1 : original<int(const char *, mode_t)>("chmod")(path, mode);
}

SHIM_EXPORT DIR *opendir(const char *path)
{
    return fails("list", path) ? nullptr : original<DIR *(const char *)>("opendir")(path);
}

SHIM_EXPORT int access(const char *path, int mode) noexcept
{
    return fails("stat", path) ? -1 : original<int(const char *, int)>("access")(path, mode);
}

SHIM_EXPORT int stat(const char *path, struct stat *result) noexcept
{
    return fails("stat", path) ? -1 : original<int(const char *, struct stat *)>("stat")(path, result);
}

SHIM_EXPORT int lstat(const char *path, struct stat *result) noexcept
{
    return fails("stat", path) ? -1 : original<int(const char *, struct stat *)>("lstat")(path, result);
}

/// Of a path, or of an open file where the path is empty.
SHIM_EXPORT int statx(int folder, const char *path, int flags, unsigned mask, struct statx *result) noexcept
{
    using StatX = int(int, const char *, int, unsigned, struct statx *);
    const bool isDescriptor = *path == '\0';
    const bool isFailure = isDescriptor ? fails("stat", folder) : fails("stat", path);
    return isFailure ? -1 : original<StatX>("statx")(folder, path, flags, mask, result);
}
