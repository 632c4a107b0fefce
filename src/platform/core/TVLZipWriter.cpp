#include "TVLZipWriter.h"

#include <QList>

#include <zip.h>

namespace {

constexpr zip_uint32_t FastestLevel = 1;
/** An ordinary file and its rights, where archives that Unix made have them. */
constexpr zip_uint32_t FileAttributes = 0100755U << 16;

} // namespace

class TVLZipWriter::Private
{
public:
    ~Private()
    {
        if (archive)
            zip_discard(archive);
        if (source)
            zip_source_free(source);
    }

    [[nodiscard]] bool add(const QString &name, const QByteArray &content)
    {
        contents.append(content);
        zip_source_t *file =
            zip_source_buffer(archive, content.constData(), zip_uint64_t(content.size()), 0);
        if (!file)
            return false;
        const zip_int64_t index =
            zip_file_add(archive, name.toUtf8().constData(), file, ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(file);
            return false;
        }
        return zip_set_file_compression(archive, zip_uint64_t(index), ZIP_CM_DEFLATE, FastestLevel)
            == 0
            && zip_file_set_external_attributes(archive, zip_uint64_t(index), 0, ZIP_OPSYS_UNIX,
                                                FileAttributes)
            == 0;
    }

    [[nodiscard]] QByteArray close()
    {
        if (!isWhole || zip_close(archive) != 0)
            return {};
        archive = nullptr;
        zip_stat_t stat;
        if (zip_source_stat(source, &stat) != 0 || zip_source_open(source) != 0)
            return {};
        QByteArray bytes(qsizetype(stat.size), Qt::Uninitialized);
        const zip_int64_t size = zip_source_read(source, bytes.data(), stat.size);
        zip_source_close(source);
        return size == zip_int64_t(stat.size) ? bytes : QByteArray();
    }

    zip_source_t *source = nullptr; ///< What the archive is written to; outlives it.
    zip_t *archive = nullptr;
    QList<QByteArray> contents; ///< Read when the archive is closed.
    bool isWhole = false;
};

TVLZipWriter::TVLZipWriter()
    : d(std::make_unique<Private>())
{
    d->source = zip_source_buffer_create(nullptr, 0, 0, nullptr);
    if (!d->source)
        return;
    zip_source_keep(d->source); // The archive lets go of it when it is closed.
    d->archive = zip_open_from_source(d->source, ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    if (!d->archive)
        zip_source_free(d->source);
    d->isWhole = d->archive != nullptr;
}

TVLZipWriter::~TVLZipWriter() = default;

void TVLZipWriter::add(const QString &name, const QByteArray &content)
{
    d->isWhole = d->isWhole && d->add(name, content);
}

QByteArray TVLZipWriter::finish()
{
    return d->close();
}
