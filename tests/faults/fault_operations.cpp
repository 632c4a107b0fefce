// A library to be loaded before all others, which lets operations on files go wrong. The
// environment says what happens:
//
// FAULT_FOLDER  what changes something below this folder counts, and nothing else
// FAULT_AT      the number of the operation that goes wrong, from 1 on; 0 for none
// FAULT_DEED    "fail": this operation fails; "fail for ever": it and all behind it do; "kill": the
//               process is killed in its place; "kill halfway": a write is half done then
// FAULT_ERROR   the number of the error that a failing operation ends with
// FAULT_LOG     a file that gets a line for each operation: its name and the path
//
// A write that fails has written half of its bytes, as on a disk that fills up. A close that fails
// has closed the file.
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#define FAULT_EXPORT extern "C" __attribute__((visibility("default")))

static_assert(sizeof(off_t) == sizeof(off64_t), "each function has a twin of the same arguments");

namespace {

constexpr std::size_t PathSize = 4096;
using Path = std::array<char, PathSize>;

enum class Deed { Fail, FailForEver, Kill, KillHalfway };

/** What is to go wrong, and how far it has come. */
class Plan
{
public:
    static Plan &instance()
    {
        // Never destroyed: there are files that are closed at the very end.
        static Plan *const theOnly = new Plan;
        return *theOnly;
    }

    /** Counts an operation; whether it is one of those that go wrong. */
    bool goesWrong(const char *name, const char *path)
    {
        if (!isWatched(path))
            return false;
        const long number = ++mCount;
        note(name, path);
        return mAt > 0 && (number == mAt || (mDeed == Deed::FailForEver && number > mAt));
    }

    /** How much a write that goes wrong writes of so many bytes, or parts. */
    template <typename Size>
    Size partOf(Size size) const
    {
        return mDeed == Deed::Kill ? 0 : size / 2;
    }

    /** The end of an operation that goes wrong, if not of the process. */
    int end() const
    {
        if (mDeed == Deed::Kill || mDeed == Deed::KillHalfway)
            kill(getpid(), SIGKILL);
        errno = mError;
        return -1;
    }

private:
    static long number(const char *name)
    {
        const char *text = getenv(name);
        return text ? std::atol(text) : 0;
    }

    static Deed deed(const char *name)
    {
        const std::string_view word(getenv(name) ? getenv(name) : "");
        if (word == "fail for ever")
            return Deed::FailForEver;
        if (word == "kill halfway")
            return Deed::KillHalfway;
        return word == "kill" ? Deed::Kill : Deed::Fail;
    }

    static int openLog(const char *path)
    {
        constexpr int Mode = 0666;
        return path ? int(syscall(SYS_openat, AT_FDCWD, path,
                                  O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, Mode))
                    : -1;
    }

    [[nodiscard]] bool isWatched(const char *path) const
    {
        const std::size_t length = mFolder ? std::strlen(mFolder) : 0;
        return length > 0 && std::strncmp(path, mFolder, length) == 0
            && (path[length] == '/' || path[length] == '\0');
    }

    void note(const char *name, const char *path) const
    {
        std::array<char, PathSize + 100> line;
        const int length = std::snprintf(line.data(), line.size(), "%s %s\n", name, path);
        if (mLog >= 0)
            syscall(SYS_write, mLog, line.data(), std::size_t(length));
    }

    const char *mFolder = getenv("FAULT_FOLDER");
    long mAt = number("FAULT_AT");
    Deed mDeed = deed("FAULT_DEED");
    int mError = int(number("FAULT_ERROR"));
    int mLog = openLog(getenv("FAULT_LOG"));
    std::atomic<long> mCount{0};
};

/** The function that one of this library stands in front of. */
template <typename Function>
Function *real(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/** The path of an open file; that of one without a name lies in its folder. */
const char *pathOf(int file, Path *path)
{
    Path link;
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link.data(), path->data(), PathSize - 1);
    path->at(length > 0 ? std::size_t(length) : 0) = '\0';
    return path->data();
}

/** A path that may be relative to an open folder. */
const char *pathAt(int folder, const char *name, Path *path)
{
    if (name[0] == '/')
        return name;
    if (folder != AT_FDCWD)
        pathOf(folder, path);
    else if (syscall(SYS_getcwd, path->data(), PathSize) < 0)
        path->at(0) = '\0';
    const std::size_t length = std::strlen(path->data());
    std::snprintf(path->data() + length, PathSize - length, "/%s", name);
    return path->data();
}

bool isOpenForWriting(int file)
{
    const long flags = syscall(SYS_fcntl, file, F_GETFL);
    return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

bool goesWrongAt(const char *name, int folder, const char *path)
{
    Path full;
    return Plan::instance().goesWrong(name, pathAt(folder, path, &full));
}

bool goesWrongOn(const char *name, int file)
{
    Path path;
    return isOpenForWriting(file) && Plan::instance().goesWrong(name, pathOf(file, &path));
}

bool openingGoesWrong(int folder, const char *path, int flags)
{
    const bool changesFiles = (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
    return changesFiles && goesWrongAt("open", folder, path);
}

int endOfFault()
{
    return Plan::instance().end();
}

} // namespace

// --- Opening and closing

FAULT_EXPORT int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return openingGoesWrong(AT_FDCWD, path, flags)
        ? endOfFault()
        : real<int(const char *, int, ...)>("open")(path, flags, mode);
}

FAULT_EXPORT int open64(const char *path, int flags, ...) __attribute__((alias("open")));

FAULT_EXPORT int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return openingGoesWrong(folder, path, flags)
        ? endOfFault()
        : real<int(int, const char *, int, ...)>("openat")(folder, path, flags, mode);
}

FAULT_EXPORT int openat64(int folder, const char *path, int flags, ...)
    __attribute__((alias("openat")));

FAULT_EXPORT int creat(const char *path, mode_t mode)
{
    return goesWrongAt("open", AT_FDCWD, path)
        ? endOfFault()
        : real<int(const char *, mode_t)>("creat")(path, mode);
}

FAULT_EXPORT int creat64(const char *path, mode_t mode) __attribute__((alias("creat")));

FAULT_EXPORT int close(int file)
{
    const bool isWrong = goesWrongOn("close", file);
    const int result = real<int(int)>("close")(file);
    return isWrong ? endOfFault() : result;
}

// --- Content

FAULT_EXPORT ssize_t write(int file, const void *bytes, size_t size)
{
    const auto realWrite = real<ssize_t(int, const void *, size_t)>("write");
    if (!goesWrongOn("write", file))
        return realWrite(file, bytes, size);
    (void)realWrite(file, bytes, Plan::instance().partOf(size));
    return endOfFault();
}

FAULT_EXPORT ssize_t pwrite(int file, const void *bytes, size_t size, off_t place)
{
    const auto realWrite = real<ssize_t(int, const void *, size_t, off_t)>("pwrite");
    if (!goesWrongOn("write", file))
        return realWrite(file, bytes, size, place);
    (void)realWrite(file, bytes, Plan::instance().partOf(size), place);
    return endOfFault();
}

FAULT_EXPORT ssize_t pwrite64(int file, const void *bytes, size_t size, off64_t place)
    __attribute__((alias("pwrite")));

FAULT_EXPORT ssize_t writev(int file, const iovec *parts, int count)
{
    const auto realWrite = real<ssize_t(int, const iovec *, int)>("writev");
    if (!goesWrongOn("write", file))
        return realWrite(file, parts, count);
    (void)realWrite(file, parts, Plan::instance().partOf(count));
    return endOfFault();
}

FAULT_EXPORT ssize_t sendfile(int target, int source, off_t *place, size_t size) noexcept
{
    return goesWrongOn("write", target)
        ? endOfFault()
        : real<ssize_t(int, int, off_t *, size_t)>("sendfile")(target, source, place, size);
}

FAULT_EXPORT ssize_t sendfile64(int target, int source, off64_t *place, size_t size) noexcept
    __attribute__((alias("sendfile")));

FAULT_EXPORT ssize_t copy_file_range(int source, off64_t *from, int target, off64_t *to,
                                     size_t size, unsigned flags)
{
    using Copy = ssize_t(int, off64_t *, int, off64_t *, size_t, unsigned);
    return goesWrongOn("write", target)
        ? endOfFault()
        : real<Copy>("copy_file_range")(source, from, target, to, size, flags);
}

FAULT_EXPORT int ftruncate(int file, off_t size) noexcept
{
    return goesWrongOn("truncate", file) ? endOfFault()
                                         : real<int(int, off_t)>("ftruncate")(file, size);
}

FAULT_EXPORT int ftruncate64(int file, off64_t size) noexcept __attribute__((alias("ftruncate")));

FAULT_EXPORT int truncate(const char *path, off_t size) noexcept
{
    return goesWrongAt("truncate", AT_FDCWD, path)
        ? endOfFault()
        : real<int(const char *, off_t)>("truncate")(path, size);
}

FAULT_EXPORT int truncate64(const char *path, off64_t size) noexcept
    __attribute__((alias("truncate")));

FAULT_EXPORT int fsync(int file)
{
    return goesWrongOn("sync", file) ? endOfFault() : real<int(int)>("fsync")(file);
}

FAULT_EXPORT int fdatasync(int file)
{
    return goesWrongOn("sync", file) ? endOfFault() : real<int(int)>("fdatasync")(file);
}

// --- Names

FAULT_EXPORT int rename(const char *from, const char *to) noexcept
{
    return goesWrongAt("rename", AT_FDCWD, to)
        ? endOfFault()
        : real<int(const char *, const char *)>("rename")(from, to);
}

FAULT_EXPORT int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept
{
    return goesWrongAt("rename", toFolder, to) ? endOfFault()
                                               : real<int(int, const char *, int, const char *)>(
                                                   "renameat")(fromFolder, from, toFolder, to);
}

FAULT_EXPORT int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
                           unsigned flags) noexcept
{
    return goesWrongAt("rename", toFolder, to)
        ? endOfFault()
        : real<int(int, const char *, int, const char *, unsigned)>("renameat2")(
            fromFolder, from, toFolder, to, flags);
}

FAULT_EXPORT int link(const char *from, const char *to) noexcept
{
    return goesWrongAt("link", AT_FDCWD, to)
        ? endOfFault()
        : real<int(const char *, const char *)>("link")(from, to);
}

FAULT_EXPORT int linkat(int fromFolder, const char *from, int toFolder, const char *to,
                        int flags) noexcept
{
    return goesWrongAt("link", toFolder, to) ? endOfFault()
                                             : real<int(int, const char *, int, const char *, int)>(
                                                 "linkat")(fromFolder, from, toFolder, to, flags);
}

FAULT_EXPORT int symlink(const char *from, const char *to) noexcept
{
    return goesWrongAt("link", AT_FDCWD, to)
        ? endOfFault()
        : real<int(const char *, const char *)>("symlink")(from, to);
}

FAULT_EXPORT int unlink(const char *path) noexcept
{
    return goesWrongAt("unlink", AT_FDCWD, path) ? endOfFault()
                                                 : real<int(const char *)>("unlink")(path);
}

FAULT_EXPORT int unlinkat(int folder, const char *path, int flags) noexcept
{
    return goesWrongAt("unlink", folder, path)
        ? endOfFault()
        : real<int(int, const char *, int)>("unlinkat")(folder, path, flags);
}

FAULT_EXPORT int remove(const char *path) noexcept
{
    return goesWrongAt("unlink", AT_FDCWD, path) ? endOfFault()
                                                 : real<int(const char *)>("remove")(path);
}

FAULT_EXPORT int rmdir(const char *path) noexcept
{
    return goesWrongAt("rmdir", AT_FDCWD, path) ? endOfFault()
                                                : real<int(const char *)>("rmdir")(path);
}

FAULT_EXPORT int mkdir(const char *path, mode_t mode) noexcept
{
    return goesWrongAt("mkdir", AT_FDCWD, path)
        ? endOfFault()
        : real<int(const char *, mode_t)>("mkdir")(path, mode);
}

FAULT_EXPORT int mkdirat(int folder, const char *path, mode_t mode) noexcept
{
    return goesWrongAt("mkdir", folder, path)
        ? endOfFault()
        : real<int(int, const char *, mode_t)>("mkdirat")(folder, path, mode);
}
