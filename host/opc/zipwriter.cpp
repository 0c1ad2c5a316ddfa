#include "host/opc/zipwriter.h"

#include <exception>
#include <utility>

#include "host/opc/files.h"
#include "host/opc/temporaryfile.h"

namespace host::opc
{
namespace
{
/// The library's source of a new content; the library owns it.
class ContentSource
{
public:
    ContentSource(std::shared_ptr<const CompressedContent> content, std::time_t modified)
        : m_content(std::move(content)), m_modified(modified)
    {
        zip_error_init(&m_error);
    }
    ContentSource(const ContentSource&) = delete;
    ContentSource& operator=(const ContentSource&) = delete;
    ~ContentSource() { zip_error_fini(&m_error); }

    static zip_int64_t Serve(void* state, void* data, zip_uint64_t size, zip_source_cmd_t command)
    {
        auto* const source = static_cast<ContentSource*>(state);
        switch (command)
        {
        case ZIP_SOURCE_OPEN:
            source->m_position = 0;
            return 0;
        case ZIP_SOURCE_READ:
            return source->Read(static_cast<char*>(data), static_cast<std::size_t>(size));
        case ZIP_SOURCE_CLOSE:
            return 0;
        case ZIP_SOURCE_STAT:
            return source->Describe(static_cast<zip_stat_t*>(data));
        case ZIP_SOURCE_ERROR:
            return zip_error_to_data(&source->m_error, data, size);
        case ZIP_SOURCE_FREE:
            std::unique_ptr<ContentSource>(source).reset();
            return 0;
        case ZIP_SOURCE_SUPPORTS:
            return ZIP_SOURCE_SUPPORTS_READABLE;
        default:
            zip_error_set(&source->m_error, ZIP_ER_OPNOTSUPP, 0);
            return -1;
        }
    }

private:
    // No exception may cross the library's frames.
    zip_int64_t Read(char* buffer, std::size_t size) noexcept
    {
        try
        {
            const std::size_t count = m_content->deflated.Read(m_position, buffer, size);
            m_position += count;
            return static_cast<zip_int64_t>(count);
        }
        catch (const std::exception&)
        {
            zip_error_set(&m_error, ZIP_ER_READ, 0);
            return -1;
        }
    }

    zip_int64_t Describe(zip_stat_t* description) const noexcept
    {
        zip_stat_init(description);
        description->valid =
            ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC | ZIP_STAT_MTIME;
        description->size = m_content->size;
        description->comp_size = m_content->deflated.Size();
        description->comp_method = ZIP_CM_DEFLATE;
        description->crc = m_content->crc;
        description->mtime = m_modified;
        return sizeof(*description);
    }

    std::shared_ptr<const CompressedContent> m_content;
    std::time_t m_modified;
    std::uint64_t m_position = 0;
    zip_error_t m_error;
};

/// Forwards the library's progress. An exception of the listener is kept and cancels the writing.
class CloseWatch
{
public:
    explicit CloseWatch(const WriteListener& listener) : m_listener(listener) {}

    void Register(zip_t* archive)
    {
        constexpr double step = 0.01;
        zip_register_progress_callback_with_state(archive, step, &CloseWatch::Progress, nullptr, this);
        zip_register_cancel_callback_with_state(archive, &CloseWatch::IsCancelled, nullptr, this);
    }

    void RethrowKept() const
    {
        if (m_kept != nullptr)
        {
            std::rethrow_exception(m_kept);
        }
    }

private:
    static void Progress(zip_t*, double fraction, void* state) noexcept
    {
        auto* const watch = static_cast<CloseWatch*>(state);
        try
        {
            watch->m_listener(fraction);
        }
        catch (...)
        {
            watch->m_kept = std::current_exception();
        }
    }

    static int IsCancelled(zip_t*, void* state) noexcept
    {
        return static_cast<CloseWatch*>(state)->m_kept != nullptr ? 1 : 0;
    }

    const WriteListener& m_listener;
    std::exception_ptr m_kept;
};
} // namespace

// Under a new name: the library gives a file that it replaces the access rights of the old one, which Wine
// turns into the mode of a program.
ZipWriter::ZipWriter(const std::filesystem::path& target)
    : m_target(target), m_temporary(NameTemporaryFile(target))
{
    int code = 0;
    m_archive.reset(zip_open(ToUtf8Path(m_temporary).c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code));
    if (m_archive == nullptr)
    {
        throw FileError(m_target, "cannot be created: " + DescribeZipError(code));
    }
}

void ZipWriter::Copy(const ZipArchive& source, std::size_t index)
{
    const ZipItem& item = source.Items().at(index);
    const zip_uint64_t added = AddItem(
        item.name, Source(zip_source_zip(m_archive.get(), source.Handle(), index, ZIP_FL_COMPRESSED, 0, -1)));
    // Otherwise the library would compress stored items.
    if (item.method == ZIP_CM_STORE && zip_set_file_compression(m_archive.get(), added, ZIP_CM_STORE, 0) != 0)
    {
        Fail(item.name);
    }
}

void ZipWriter::Add(const std::string& name,
                    std::shared_ptr<const CompressedContent> content,
                    std::time_t modified)
{
    auto feed = std::make_unique<ContentSource>(std::move(content), modified);
    Source source(zip_source_function(m_archive.get(), &ContentSource::Serve, feed.get()));
    if (source == nullptr)
    {
        Fail(name);
    }
    static_cast<void>(feed.release());
    AddItem(name, std::move(source));
}

zip_uint64_t ZipWriter::AddItem(const std::string& name, Source source)
{
    const zip_int64_t index =
        source == nullptr ? -1 : zip_file_add(m_archive.get(), name.c_str(), source.get(), ZIP_FL_ENC_UTF_8);
    if (index < 0)
    {
        Fail(name);
    }
    static_cast<void>(source.release());
    return static_cast<zip_uint64_t>(index);
}

void ZipWriter::Close(const WriteListener& listener)
{
    CloseWatch watch(listener);
    watch.Register(m_archive.get());
    if (zip_close(m_archive.get()) != 0)
    {
        watch.RethrowKept();
        throw FileError(m_target, std::string("cannot be written: ") + zip_strerror(m_archive.get()));
    }
    static_cast<void>(m_archive.release());
    MoveIntoPlace(m_temporary, m_target);
}

void ZipWriter::Fail(const std::string& name) const
{
    throw FileError(m_target, name + ": cannot be written: " + zip_strerror(m_archive.get()));
}
} // namespace host::opc
