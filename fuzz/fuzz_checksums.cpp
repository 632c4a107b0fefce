#include "FuzzSupport.h"

#include "TUuid.h"
#include "TVLProjectChecksums.h"

#include <QFile>

namespace {

using Checksums = TVLProjectChecksums;

ChecksumMap load(const QString &path)
{
    ChecksumMap checksums;
    if (!Checksums::loadChecksumFile(path, &checksums))
        tvlReportFinding("a file can't be read");
    return checksums;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        tvlReportFinding("what was written can't be opened");
    return file.readAll();
}

/** A line of hexadecimal digits, with what else stands among them taken out. */
QByteArray digitsOf(const QByteArray &text)
{
    QByteArray digits;
    for (const char ch : text) {
        const char lower = char(ch | 0x20);
        if ((ch >= '0' && ch <= '9') || (lower >= 'a' && lower <= 'f'))
            digits += ch;
    }
    return digits.size() % 2 == 0 ? digits : '0' + digits;
}

QUuid uuidOf(const QString &text)
{
    const QUuid uuid(text);
    const QString plain = TUuid::toStringNoBraces(uuid, true);
    const bool isWhole = text.toUpper() == plain || text.toUpper() == u'{' + plain + u'}';
    return isWhole ? uuid : QUuid();
}

/** What a file means, line by line as the format is told. */
ChecksumMap meaningOf(QByteArray file)
{
    if (file.startsWith("\xef\xbb\xbf"))
        file.remove(0, 3);
    ChecksumMap checksums;
    const QList<QByteArray> lines = file.split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype equalSign = line.indexOf('=');
        if (equalSign <= 0)
            continue;
        const QByteArray before = line.first(equalSign);
        const qsizetype slash = before.indexOf('/');
        // A byte order mark is one in front of the file only.
        const auto text = [](const QByteArray &utf8) {
            return QString::fromUtf8('.' + utf8).sliced(1);
        };
        const ChecksumKey key = slash > 0
            ? ChecksumKey(uuidOf(text(before.first(slash))), text(before.sliced(slash + 1)))
            : ChecksumKey(QUuid(), text(before));
        checksums.insert(key, QByteArray::fromHex(digitsOf(line.sliced(equalSign + 1))));
    }
    return checksums;
}

/** Takes out what no numbered file is called, since as a line of its own it means something else.
 */
void settle(ChecksumMap *checksums)
{
    checksums->removeIf([](const ChecksumMap::iterator &entry) {
        const auto &[uuid, name] = entry.key();
        return uuid.isNull()
            && (name.isEmpty() || name.contains(u'/') || name.startsWith(QChar::ByteOrderMark));
    });
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is a checksum file. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = tvlInputAsFile(data, size);
    ChecksumMap checksums = load(path);
    if (checksums != meaningOf(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size))))
        tvlReportFinding("a file is read as something else");

    settle(&checksums);
    if (!Checksums::saveChecksumFile(path, checksums))
        tvlReportFinding("what was read can't be written");
    const QByteArray file = content(path);
    const ChecksumMap again = load(path);
    if (!Checksums::saveChecksumFile(path, again))
        tvlReportFinding("what was read again can't be written");
    if (content(path) != file)
        tvlReportDifference("a second writing differs", file, content(path));
    if (again != checksums)
        tvlReportFinding("what was written is read as something else");

    QMap<QString, QByteArray> texts;
    for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry) {
        const auto &[uuid, name] = entry.key();
        texts.insert(uuid.isNull() ? name : TUuid::toStringNoBraces(uuid, false) + u'/' + name,
                     entry.value());
        if (!Checksums::checksumMapContains(checksums, uuid))
            tvlReportFinding("a map doesn't contain the uuid of its key");
    }
    if (Checksums::toUuidChecksumMap(texts) != checksums)
        tvlReportFinding("keys as text are split otherwise");
    return 0;
}
