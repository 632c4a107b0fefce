#include "BenchMain.h"
#include "RatioMeter.h"

#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int BytesPerText = 5'000;

using Checksums = TVLProjectChecksums;
using Format = TVLProjectFolderFormat;
using Target = std::optional<double>;

/** What a project of so many texts has recorded. */
ChecksumMap recordsOf(int count)
{
    ChecksumMap checksums;
    for (int id = 0; id < count; ++id) {
        checksums.insert(
            {QUuid(), Format::documentFileNameId(id, TVL::MainText)},
            QCryptographicHash::hash(QByteArray::number(id), QCryptographicHash::Sha1));
    }
    return checksums;
}

/** A file with such records. */
class RecordsFile
{
public:
    explicit RecordsFile(int count)
        : mRecords(recordsOf(count))
    {
        if (!Checksums::saveChecksumFile(path(), mRecords))
            qFatal("the records could not be saved");
        QFile file(path());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("the records could not be read");
        mBytes = file.size();
        QTextStream stream(&file);
        for (QString line; stream.readLineInto(&line);)
            mLines.append(line);
    }

    [[nodiscard]] QString path() const { return mDirectory.filePath(u"docs.checksum"_s); }
    [[nodiscard]] double bytes() const { return double(mBytes); }
    [[nodiscard]] const ChecksumMap &records() const { return mRecords; }
    [[nodiscard]] const QStringList &lines() const { return mLines; }

private:
    QTemporaryDir mDirectory;
    ChecksumMap mRecords;
    QStringList mLines;
    qint64 mBytes = 0;
};

void loadRecords(benchmark::State &state, int count, Target target)
{
    const RecordsFile file(count);
    bool ok = true;
    measureAgainst(
        state, {"bare QTextStream pass over the lines", file.bytes(), target},
        [&] {
            ChecksumMap checksums;
            return processorSeconds([&] {
                ok = Checksums::loadChecksumFile(file.path(), &checksums)
                    && checksums.size() == count && ok;
            });
        },
        [&] {
            return processorSeconds([&] {
                QFile device(file.path());
                ok = device.open(QIODevice::ReadOnly) && ok;
                QTextStream stream(&device);
                int lines = 0;
                for (QString line; stream.readLineInto(&line);)
                    ++lines;
                ok = lines == count && ok;
            });
        });
    if (!ok)
        state.SkipWithError("the records could not be loaded");
}

void saveRecords(benchmark::State &state, int count, Target target)
{
    const RecordsFile file(count);
    bool ok = true;
    measureAgainst(
        state, {"bare QTextStream that writes the same lines", file.bytes(), target},
        [&] {
            return processorSeconds(
                [&] { ok = Checksums::saveChecksumFile(file.path(), file.records()) && ok; });
        },
        [&] {
            return processorSeconds([&] {
                QFile device(file.path());
                ok = device.open(QIODevice::WriteOnly) && ok;
                QTextStream stream(&device);
                for (const QString &line : file.lines())
                    stream << line << u'\n';
            });
        });
    if (!ok)
        state.SkipWithError("the records could not be saved");
}

/** A project's numbered texts. */
class TextFiles
{
public:
    explicit TextFiles(int count)
    {
        bool ok = false;
        Format::docsDirectory(path(), &ok);
        QRandomGenerator random(1);
        for (int id = 0; id < count; ++id) {
            QByteArray content(BytesPerText, Qt::Uninitialized);
            for (char &ch : content)
                ch = char(random.bounded(' ', '~'));
            mFilePaths.append(Format::filesDocsNodeTypeFilePath(path(), id, TVL::MainText));
            QFile file(mFilePaths.constLast());
            ok = file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && ok;
        }
        if (!ok)
            qFatal("the texts could not be written");
    }

    [[nodiscard]] QString path() const { return mDirectory.filePath(u"Novel.tavel"_s); }
    [[nodiscard]] const QStringList &filePaths() const { return mFilePaths; }

private:
    QTemporaryDir mDirectory;
    QStringList mFilePaths;
};

void hashFiles(benchmark::State &state, int count, Target target)
{
    const TextFiles files(count);
    bool ok = true;
    measureAgainst(
        state,
        {"bare QCryptographicHash over the same files", double(count) * BytesPerText, target},
        [&] {
            return processorSeconds([&] {
                ok = Checksums::calcFilesDocsChecksums(files.path()).size() == count && ok;
            });
        },
        [&] {
            return processorSeconds([&] {
                for (const QString &filePath : files.filePaths()) {
                    QFile file(filePath);
                    ok = file.open(QIODevice::ReadOnly) && ok;
                    QCryptographicHash hash(QCryptographicHash::Sha1);
                    ok = hash.addData(&file) && !hash.result().isEmpty() && ok;
                }
            });
        });
    if (!ok)
        state.SkipWithError("the texts could not be hashed");
}

} // namespace

void registerBenchmarks()
{
    struct Row
    {
        const char *name;
        void (*run)(benchmark::State &, int, Target);
        QList<int> sizes;
        double target; ///< Of the largest size.
        int rounds;
    };
    const Row rows[] = {
        {"load_checksums", loadRecords, {1'000, 10'000, 100'000}, 2.5, 11},
        {"save_checksums", saveRecords, {1'000, 10'000, 100'000}, 4, 11},
        {"hash_documents", hashFiles, {1'000, 10'000}, 1.5, 5},
    };
    for (const Row &row : rows) {
        for (const int size : row.sizes) {
            const Target target = size == row.sizes.constLast() ? Target(row.target) : std::nullopt;
            registerRatio(row.name + ('/' + std::to_string(size)), row.rounds,
                          [run = row.run, size, target](benchmark::State &state) {
                              run(state, size, target);
                          });
        }
    }
}
