#include "VEXcrt_File.h"

#include "VEXcrt_Process.h"
#include "VEXcrt_System.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{
constexpr off_t UNBOUNDED = std::numeric_limits<off_t>::max();
constexpr std::size_t BUFFER_BYTES = 1 << 20;

class Descriptor
{
public:
    explicit Descriptor(int descriptor) noexcept : m_descriptor(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }

    operator int() const noexcept { return m_descriptor; }
    /// 0, or the error: only now some file systems tell that a disk is full.
    int Close() noexcept
    {
        const int descriptor = std::exchange(m_descriptor, -1);
        return descriptor >= 0 && close(descriptor) != 0 && errno != EINTR ? errno : 0;
    }

private:
    int m_descriptor;
};

/// Copies the contents of one regular file to another, empty one. Each function gives 0, or the error.
class ContentsCopy
{
public:
    ContentsCopy(int source, int target) noexcept : m_source(source), m_target(target) {}

    /// `size` is what the source claims to hold: it may change meanwhile, and some files claim nothing.
    int Run(off_t size)
    {
        while (m_offset < size) {
            off_t end = size;
            const off_t data = lseek(m_source, m_offset, SEEK_DATA);
            if (data < 0 && errno == ENXIO) {
                m_offset = size; // a hole up to the end
                break;
            }
            if (data >= 0) {
                m_offset = data;
                const off_t hole = lseek(m_source, data, SEEK_HOLE);
                end = hole > data ? std::min(hole, size) : size;
            }
            if (const int error = CopyUpTo(end)) {
                return error;
            }
            if (m_offset < end) {
                break; // the source became shorter
            }
        }
        const int error = CopyUpTo(UNBOUNDED);
        return error == 0 && ftruncate(m_target, m_offset) != 0 ? errno : error;
    }

private:
    /// Up to `end` or to where the source ends.
    int CopyUpTo(off_t end)
    {
        while (m_offset < end) {
            const ssize_t copied = m_hasKernelCopy ? CopyInKernel(end) : CopyThroughBuffer(end);
            if (copied > 0) {
                m_offset += copied;
            } else if (m_hasKernelCopy && (copied == 0 || errno != EINTR)) {
                m_hasKernelCopy = false; // not between these file systems, or not of such a file: the buffer decides
            } else if (copied == 0) {
                return 0;
            } else if (errno != EINTR) {
                return errno;
            }
        }
        return 0;
    }

    ssize_t CopyInKernel(off_t end) const noexcept
    {
        off_t from = m_offset;
        off_t to = m_offset;
        const auto wanted = std::min<off_t>(end - m_offset, std::numeric_limits<std::int32_t>::max());
        return copy_file_range(m_source, &from, m_target, &to, static_cast<std::size_t>(wanted), 0);
    }

    ssize_t CopyThroughBuffer(off_t end)
    {
        if (!m_buffer) {
            m_buffer = std::make_unique<char[]>(BUFFER_BYTES);
        }
        const auto wanted = std::min<off_t>(end - m_offset, BUFFER_BYTES);
        const ssize_t read = pread(m_source, m_buffer.get(), static_cast<std::size_t>(wanted), m_offset);
        return read <= 0 ? read : pwrite(m_target, m_buffer.get(), static_cast<std::size_t>(read), m_offset);
    }

    const int m_source;
    const int m_target;
    off_t m_offset = 0;
    bool m_hasKernelCopy = true;
    std::unique_ptr<char[]> m_buffer;
};

/// Where a device or a pipe is at one of the ends.
int CopyStream(int source, int target)
{
    std::vector<char> buffer(BUFFER_BYTES);
    for (;;) {
        const std::int64_t read = VEXCRT::ReadDescriptor(source, buffer.data(), buffer.size());
        if (read <= 0) {
            return read < 0 ? errno : 0;
        }
        if (!VEXCRT::WriteDescriptor(target, buffer.data(), static_cast<std::size_t>(read))) {
            return errno;
        }
    }
}

std::string DirectoryOf(const std::string& path)
{
    const std::size_t separator = path.rfind('/');
    return separator == std::string::npos ? "." : path.substr(0, separator + 1);
}

/// A whole copy is made beside the target and takes its place in one step.
int CopyBeside(int source, const struct stat& status, const std::string& to)
{
    std::string place = DirectoryOf(to) + "/.copy-XXXXXX";
    Descriptor target(mkostemp(place.data(), O_CLOEXEC));
    if (target < 0) {
        return errno;
    }
    constexpr mode_t PERMISSIONS = S_IRWXU | S_IRWXG | S_IRWXO;
    int error = S_ISREG(status.st_mode) ? ContentsCopy(source, target).Run(status.st_size) : CopyStream(source, target);
    if (error == 0 && fchmod(target, status.st_mode & PERMISSIONS) != 0) {
        error = errno;
    }
    const int closeError = target.Close();
    error = error ? error : closeError;
    if (error == 0 && rename(place.c_str(), to.c_str()) != 0) {
        error = errno;
    }
    if (error) {
        unlink(place.c_str());
    }
    return error;
}

/// The system would take what stands before it for the path.
bool HasZeroByte(const std::string& path) noexcept
{
    return path.find('\0') != std::string::npos;
}

int Accessible(const std::string& path, int mode) noexcept
{
    return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0 ? 0 : errno;
}
} // namespace

bool VEXCRT::IsExecutable(const char* path) noexcept
{
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode) && faccessat(AT_FDCWD, path, X_OK, AT_EACCESS) == 0;
}

int VEXCRT::CheckFile(const std::string& path, bool forReading, bool forWriting)
{
    struct stat status;
    if (HasZeroByte(path)) {
        return EINVAL;
    }
    if (stat(path.c_str(), &status) != 0) {
        const bool mayBeNew = errno == ENOENT && forWriting && !forReading && !path.empty();
        if (!mayBeNew) {
            return errno;
        }
        return path.back() == '/' ? EISDIR : Accessible(DirectoryOf(path), W_OK | X_OK);
    }
    if (S_ISDIR(status.st_mode) && (forReading || forWriting)) {
        return EISDIR;
    }
    return Accessible(path, (forReading ? R_OK : 0) | (forWriting ? W_OK : 0));
}

int VEXCRT::CopyFileOver(const std::string& from, const std::string& to)
{
    if (HasZeroByte(from) || HasZeroByte(to)) {
        return EINVAL;
    }
    const Descriptor source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
    struct stat status;
    if (source < 0 || fstat(source, &status) != 0) {
        return errno;
    }
    struct stat old;
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    if (stat(to.c_str(), &old) != 0) {
        const int error = errno;
        const bool isNew = error == ENOENT && lstat(to.c_str(), &old) != 0; // and no link to nowhere
        return isNew ? CopyBeside(source, status, to) : error;
    }
    if (old.st_dev == status.st_dev && old.st_ino == status.st_ino) {
        return 0; // the file itself
    }
    if (const int error = S_ISDIR(old.st_mode) ? EISDIR : Accessible(to, W_OK)) {
        return error;
    }
    if (!S_ISREG(old.st_mode)) {
        const Descriptor target(open(to.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
        return target < 0 ? errno : CopyStream(source, target);
    }
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(to.c_str(), nullptr), &std::free);
    return real ? CopyBeside(source, status, real.get()) : errno;
}

std::string VEXCRT::SystemErrorText(int error)
{
    return ErrorText(error);
}
