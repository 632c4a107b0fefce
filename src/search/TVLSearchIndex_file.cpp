#include "TVLSearchIndex.h"

#include "TVLErrorText_p.h"
#include "TVLFilePresence_p.h"
#include "TVLFileWriting_p.h"
#include "TVLNumberedChecksums_p.h"
#include "TVLProjectChecksums.h"
#include "TVLProjectFolderFormat.h"
#include "TVLRegularFile.h"
#include "TVLSearchFile_p.h"
#include "TVLSearchRows_p.h"
#include "TVLSearchSql_p.h"
#include "TVLSearchedProject.h"
#include "TVLTextProof_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QXmlStreamWriter>

#include <vector>

using namespace Qt::StringLiterals;

using namespace TVLSearchSql;

namespace {

const QString SelectIdentities = u"SELECT DISTINCT identity FROM DocumentSearchProperties"_s;
const QString SelectText =
    u"SELECT propertyValue FROM DocumentSearchProperties WHERE type=:t AND identity = :i"_s;

constexpr const char *CannotOpen =
    QT_TRANSLATE_NOOP("TVLSearchIndex", "Could not find or open the search.indexes file");

/** A text of an item at a time, of one property. */
class TextQuery
{
public:
    TextQuery(const QSqlDatabase &database, sqlite3 *handle, TVL::DocumentProperty property)
        : mProperty(property)
        , mStatement(database, handle, SelectText)
    {
        mStatement.bind(0, int(property));
    }

    /** False when the database fails. */
    [[nodiscard]] bool read(int id, TVLFiledTexts *texts)
    {
        mStatement.bind(1, id);
        const bool hasText = mStatement.next();
        if (hasText) {
            (*texts)[mProperty] = mStatement.textAt(0);
            mStatement.reset();
        }
        return hasText || !mStatement.hasFailed();
    }

private:
    TVL::DocumentProperty mProperty;
    TVLSqlStatement mStatement;
};

/** Writes all items and tells their ids; false when the database fails. */
bool writeDocuments(QXmlStreamWriter *writer, const QSqlDatabase &database, sqlite3 *handle,
                    QSet<int> *ids)
{
    TVLSqlStatement identities(database, handle, SelectIdentities);
    std::vector<TextQuery> queries;
    for (const int property : TVLSearchIndex::stringDocumentProperties())
        queries.emplace_back(database, handle, TVL::DocumentProperty(property));

    TVLSearchFile::writeStart(writer);
    while (identities.next()) {
        const int id = identities.intAt(0);
        TVLFiledTexts texts;
        for (TextQuery &query : queries) {
            if (!query.read(id, &texts))
                return false;
        }
        TVLSearchFile::writeDocument(writer, id, texts);
        ids->insert(id);
    }
    TVLSearchFile::writeEnd(writer);
    return !identities.hasFailed();
}

} // namespace

QString TVLSearchIndex::searchIndexesFilePath() const
{
    return mProject ? TVLProjectFolderFormat::searchIndexesFilePath(mProject->searchedPath())
                    : QString();
}

// --- Reading

bool TVLSearchIndex::load(QString *error)
{
    TVLSearchRows rows(*this, mHandle);
    return readFile(
        [&rows](int id, const LoadedTexts &texts) {
            for (const LoadedText &text : texts)
                rows.update(id, text.property, text.text, text.isConfirmed);
        },
        error);
}

bool TVLSearchIndex::readFile(const TakeTexts &take, QString *error)
{
    mIsLoaded = true;
    mIsModified = false;
    if (!mProject || tvlIsMissing(searchIndexesFilePath()))
        return true;
    TVLRegularFile file(searchIndexesFilePath());
    if (!file.open(QIODevice::ReadOnly))
        return tvlFail(error, QCoreApplication::translate("TVLSearchIndex", CannotOpen));

    TVLProjectChecksums *checksums = mProject->checksums();
    // Texts of a project that never had hashes are taken as they are. Beside hashes, a text without
    // one isn't that of any file.
    const bool hadNoHashes = !checksums->loadChecksums() && checksums->isFileMissing();
    const bool isRead = canLookIntoDocs()
        && readTexts(&file, hadNoHashes ? WithoutHash::AnyText : WithoutHash::NoText, take, error);
    mIsModified = false;
    // A hash vouches for a text that is here. Without the texts it would confirm that there is
    // none, now or when the file is next read.
    if (!isRead)
        checksums->setChecksums({});
    return isRead;
}

/** Whether it can be told of a document file that it isn't there. The folder need not be. */
bool TVLSearchIndex::canLookIntoDocs() const
{
    const QString path = TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath());
    return QFileInfo(path).isDir() || tvlIsMissing(path);
}

/** All of the file or nothing: what stands before a fault is no more to be relied on. */
bool TVLSearchIndex::readTexts(QIODevice *device, WithoutHash withoutHash, const TakeTexts &take,
                               QString *error)
{
    Bundle bundle(this);
    const TVLNumberedChecksums checksums(mProject->checksums());
    const QString readError = TVLSearchFile::read(device, [&](int id, const TVLFiledTexts &texts) {
        mStoredIds.insert(id);
        take(id, loadedTexts(checksums, id, texts, withoutHash));
    });
    tvlSetError(error, readError);
    return readError.isEmpty() && bundle.isOpen() && bundle.keep();
}

TVLSearchIndex::LoadedTexts TVLSearchIndex::loadedTexts(const TVLNumberedChecksums &checksums,
                                                        int id, const TVLFiledTexts &texts,
                                                        WithoutHash withoutHash)
{
    const auto isCurrent = [&](TVL::DocumentProperty property) {
        return tvlIsVouchedFor(checksums, id, property,
                               withoutHash == WithoutHash::AnyText || texts.at(property).isEmpty());
    };
    const bool isText = isCurrent(TVL::TextProperty);
    const bool isNotes = isCurrent(TVL::NotesProperty);
    const bool isSynopsis = isCurrent(TVL::SynopsisProperty);
    // Which comments there are, the text says too.
    const bool isComments =
        isCurrent(TVL::CommentsProperty) && (isText || texts.at(TVL::CommentsProperty).isEmpty());
    const auto loaded = [&texts](TVL::DocumentProperty property, bool isConfirmed) {
        return LoadedText{property, texts.at(property), isConfirmed};
    };
    return {loaded(TVL::SynopsisProperty, isSynopsis), loaded(TVL::TextProperty, isText),
            loaded(TVL::NotesProperty, isNotes),
            loaded(TVL::CustomMetaDataProperty, isText && isNotes && isSynopsis && isComments),
            loaded(TVL::CommentsProperty, isComments)};
}

QString TVLSearchIndex::fileError(const QString &path)
{
    TVLRegularFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QCoreApplication::translate("TVLSearchIndex", CannotOpen);
    return TVLSearchFile::read(&file, [](int, const TVLFiledTexts &) {});
}

// --- Writing

void TVLSearchIndex::save()
{
    if (!mProject)
        return;
    // The file isn't touched before all that it will hold is there.
    QByteArray content;
    QXmlStreamWriter writer(&content);
    QSet<int> ids;
    if (!writeDocuments(&writer, *this, mHandle, &ids))
        return;
    if (!canReplaceFile() || !mProject->checksums()->withdrawOutdated()
        || !tvlWriteOwnFile(content, searchIndexesFilePath(), nullptr)) {
        qCritical() << "could not write to search indexes file";
        return;
    }
    mStoredIds = ids;
    mIsFileMisleading = false;
    mIsModified = false;
}

/** Whether a file that is there may get other texts. Not while the hashes are away with the folder
 * of the documents: they would vouch for these as soon as they are back. */
bool TVLSearchIndex::canReplaceFile() const
{
    const QFileInfo file(searchIndexesFilePath());
    if (tvlIsMissing(file.filePath()))
        return true;
    return file.isFile() && file.isWritable()
        && QFileInfo(TVLProjectFolderFormat::filesDocsPath(mProject->searchedPath())).isDir();
}
