#include "TVLZipReader.h"
#include "TVLRegularFile.h"

#include <QFile>

#include <zip.h>

namespace {

// Deflate can't shrink further than about 1:1032; an entry that claims more lies about its size.
constexpr zip_uint64_t BestDeflateRatio = 1040;

} // namespace

class TVLZipReader::Private
{
public:
    ~Private()
    {
        if (archive)
            zip_discard(archive);
    }

    QByteArray bytes; ///< The whole archive; the handle below reads from it.
    zip_t *archive = nullptr;
};

TVLZipReader::TVLZipReader(const QString &filePath)
    : d(std::make_unique<Private>())
{
    TVLRegularFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        return;
    d->bytes = file.readAll();
    // Else nothing at all would pass for an archive without entries.
    if (d->bytes.isEmpty())
        return;
    zip_source_t *source =
        zip_source_buffer_create(d->bytes.constData(), zip_uint64_t(d->bytes.size()), 0, nullptr);
    if (!source)
        return;
    d->archive = zip_open_from_source(source, ZIP_RDONLY, nullptr);
    if (!d->archive)
        zip_source_free(source);
}

TVLZipReader::~TVLZipReader() = default;

bool TVLZipReader::isOpen() const
{
    return d->archive != nullptr;
}

int TVLZipReader::count() const
{
    return isOpen() ? int(zip_get_num_entries(d->archive, 0)) : 0;
}

int TVLZipReader::indexOf(const QString &name) const
{
    return isOpen() ? int(zip_name_locate(d->archive, name.toUtf8().constData(), 0)) : -1;
}

std::optional<QByteArray> TVLZipReader::content(int index) const
{
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (index < 0 || index >= count()
        || zip_stat_index(d->archive, zip_uint64_t(index), 0, &stat) != 0)
        return std::nullopt;
    constexpr zip_uint64_t Needed = ZIP_STAT_SIZE | ZIP_STAT_COMP_SIZE;
    if ((stat.valid & Needed) != Needed || stat.comp_size > zip_uint64_t(d->bytes.size())
        || stat.size > stat.comp_size * BestDeflateRatio)
        return std::nullopt;

    zip_file_t *file = zip_fopen_index(d->archive, zip_uint64_t(index), 0);
    if (!file)
        return std::nullopt;
    // One byte more than there should be: reaching the end is what checks the checksum.
    QByteArray content(qsizetype(stat.size) + 1, Qt::Uninitialized);
    zip_uint64_t size = 0;
    zip_int64_t read = 0;
    while (size < zip_uint64_t(content.size())
           && (read = zip_fread(file, content.data() + size, zip_uint64_t(content.size()) - size))
               > 0)
        size += zip_uint64_t(read);
    zip_fclose(file);
    if (read < 0 || size != stat.size)
        return std::nullopt;
    content.truncate(qsizetype(size));
    return content;
}
