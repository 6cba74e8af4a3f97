#include "files.h"

#include "progress.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace filterctl {

namespace {

namespace fs = std::filesystem;

using Write = std::function<void(const Sink& sink)>;

[[noreturn]] void fail(const std::string& name, const char* what, int error)
{
    throw std::runtime_error(name + ": cannot " + what + ": " +
                             std::generic_category().message(error));
}

/** An open file, and the name under which the user knows it. */
class File {
public:
    File(int descriptor, std::string name) : descriptor_(descriptor), name_(std::move(name))
    {
        if (descriptor_ < 0)
            fail(name_, "open", errno);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File()
    {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }

    std::string readAll()
    {
        constexpr std::size_t STEP = 65536;
        std::string bytes;
        const bool waits = ::isatty(descriptor_) == 1;
        Stage stage(waits ? nullptr : "reading", sizeOfFile());
        for (std::size_t size = 0;;) {
            stage.reach(size);
            bytes.resize(size + STEP);
            const ssize_t count = ::read(descriptor_, &bytes[size], STEP);
            if (count < 0 && errno != EINTR)
                fail(name_, "read", errno);
            size += count > 0 ? static_cast<std::size_t>(count) : 0;
            bytes.resize(size);
            if (count == 0)
                return bytes;
        }
    }

    void writeAll(const Write& write)
    {
        write([this](std::string_view piece) { append(piece); });
    }

    void append(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR)
                fail(name_, "write", errno);
            bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }

    void setMode(mode_t mode)
    {
        if (::fchmod(descriptor_, mode) != 0)
            fail(name_, "set the permissions", errno);
    }

    void sync()
    {
        if (::fsync(descriptor_) != 0)
            fail(name_, "write", errno);
    }

    /** Some systems report only here that the bytes could not be written. */
    void close()
    {
        if (::close(std::exchange(descriptor_, -1)) != 0)
            fail(name_, "write", errno);
    }

private:
    /** 0 if it is not known before the end, as that of a pipe. */
    std::size_t sizeOfFile() const
    {
        struct stat status;
        const bool isFile = ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
        return isFile ? static_cast<std::size_t>(status.st_size) : 0;
    }

    int descriptor_;
    const std::string name_;
};

/** Removes a file when destroyed, unless it was moved to its target. */
class Leftover {
public:
    explicit Leftover(const std::string& path) : path_(path) {}
    Leftover(const Leftover&) = delete;
    Leftover& operator=(const Leftover&) = delete;
    ~Leftover()
    {
        if (!path_.empty())
            ::unlink(path_.c_str());
    }

    void moveTo(const fs::path& target, const std::string& name)
    {
        if (::rename(path_.c_str(), target.c_str()) != 0)
            fail(name, "replace", errno);
        path_.clear();
    }

private:
    std::string path_;
};

mode_t modeOfNewFiles()
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

/** The target of a link, which may not exist yet. */
fs::path followLinks(fs::path path)
{
    constexpr int MOST_LINKS = 40;
    std::error_code error;
    for (int links = 0; links < MOST_LINKS && fs::is_symlink(fs::symlink_status(path, error));
         ++links)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

/** Writes a file next to the target first, so that the target is complete at all times. */
void replaceFile(const fs::path& target, const std::string& name, mode_t mode, const Write& write)
{
    std::string path = (target.parent_path() / ".filterctl.XXXXXX").string();
    File file(::mkstemp(path.data()), name);
    Leftover leftover(path);
    file.writeAll(write);
    file.setMode(mode);
    file.sync();
    file.close();
    leftover.moveTo(target, name);
}

void writeInto(int descriptor, const std::string& name, const Write& write)
{
    File file(descriptor, name);
    file.writeAll(write);
    file.close();
}

} // namespace

std::string readFile(const std::string& name)
{
    File file(name == "-" ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC), name);
    return file.readAll();
}

bool areSameFile(const std::string& a, const std::string& b)
{
    std::error_code error;
    return fs::is_regular_file(a, error) && fs::equivalent(a, b, error) && !error;
}

void writeFile(const std::string& name, std::string_view bytes)
{
    writeFile(name, [bytes](const Sink& sink) { sink(bytes); });
}

void writeFile(const std::string& name, const Write& write)
{
    if (name == "-") {
        stopProgress(); // which would stand between the lines if both are the same terminal
        return writeInto(STDOUT_FILENO, name, write);
    }

    std::error_code error;
    const fs::file_status status = fs::status(name, error);
    if (status.type() == fs::file_type::none)
        fail(name, "open", error.value());
    const bool isNew = status.type() == fs::file_type::not_found;
    if (!isNew && status.type() != fs::file_type::regular)
        return writeInto(::open(name.c_str(), O_WRONLY | O_CLOEXEC), name, write);

    const auto oldMode = static_cast<mode_t>(status.permissions() & fs::perms::mask);
    replaceFile(followLinks(name), name, isNew ? modeOfNewFiles() : oldMode, write);
}

} // namespace filterctl
