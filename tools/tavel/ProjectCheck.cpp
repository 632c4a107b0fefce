#include "ProjectCheck.h"

#include "Console.h"
#include "ItemDocuments.h"

#include "TUuid.h"
#include "TVLCoreUtil.h"
#include "TVLProjectFolderFormat.h"
#include "TVLTextDocument.h"

#include <QDir>
#include <QFileInfo>
#include <QTextDocument>
#include <QXmlStreamReader>

#include <array>

using namespace Qt::StringLiterals;

namespace {

/** How many ASCII digits a name begins with. */
qsizetype leadingDigits(const QString &name)
{
    qsizetype count = 0;
    while (count < name.size() && name.at(count) >= u'0' && name.at(count) <= u'9')
        ++count;
    return count;
}

/** Reads over the texts of an item in the file of texts to search by; whether there are any. */
bool hasRecordedText(QXmlStreamReader *reader)
{
    static const QStringList tags{u"Text"_s, u"Notes"_s, u"Synopsis"_s};
    bool isFound = false;
    while (reader->readNextStartElement()) {
        const bool isText = tags.contains(reader->name());
        const QString text = reader->readElementText(QXmlStreamReader::IncludeChildElements);
        isFound = isFound || (isText && !text.isEmpty());
    }
    return isFound;
}

} // namespace

std::optional<int> leadingNumber(const QString &name, const QString &rest)
{
    const qsizetype digits = leadingDigits(name);
    if (digits == 0 || (!rest.isNull() && QStringView(name).sliced(digits) != rest))
        return std::nullopt;
    bool ok = false;
    const int number = name.first(digits).toInt(&ok);
    return ok ? number : -1;
}

QString identityOf(const TVLProjectNode *node)
{
    return node->mId < 0 ? TUuid::toStringNoBraces(node->mUuid, true) : u"#%1"_s.arg(node->mId);
}

ProjectCheck::ProjectCheck(const BinderFiles &files)
    : mFiles(files)
{
}

QList<Problem> ProjectCheck::run()
{
    readBinder();
    checkBinderNames();
    checkVersions();
    if (mProject) {
        checkItems();
        checkSystemFolders();
        checkTables();
        checkDefaults();
        checkWhatItemsReferTo();
        checkReferences(mProject->sections().mProjectReferences, u"ProjectReferences"_s);
        checkBackdrop();
        checkTemplateFolder();
        checkCollections();
        checkDocs();
        checkTexts();
        checkNotes();
        checkSnapshots();
        checkHashes();
        checkSearchIndex();
    }
    return mProblems;
}

void ProjectCheck::add(const QString &kind, const QString &where, const QString &text)
{
    mProblems.append({kind, where, text});
}

QString ProjectCheck::relative(const QString &path) const
{
    return QDir(mFiles.projectPath).relativeFilePath(path);
}

// --- The binder

void ProjectCheck::readBinder()
{
    readPlainBinder();
    readZippedBinder(mFiles.autosave, u"autosaveUnreadable"_s);
    readZippedBinder(mFiles.backup, u"backupUnreadable"_s);
    if (!mProject && mUnloadable)
        take(std::move(mUnloadable), mUnloadableSource);
}

void ProjectCheck::readPlainBinder()
{
    if (mFiles.binder.isEmpty()) {
        const QString expected = TVLProjectFolderFormat::defaultBinderFilePath(mFiles.projectPath);
        add(u"noBinder"_s, relative(expected), u"there is no binder file"_s);
        return;
    }
    auto project = std::make_unique<TVLBinderContents>();
    QString error;
    const std::unique_ptr<QIODevice> binder =
        TVLProjectFolderFormat::openFile(mFiles.projectPath, mFiles.binder, &error);
    if (binder)
        error = project->read(binder.get());
    if (error.isEmpty())
        takeIfLoadable(std::move(project), mFiles.binder);
    else
        add(u"binderUnreadable"_s, relative(mFiles.binder), error);
}

void ProjectCheck::readZippedBinder(const QString &path, const QString &unreadableKind)
{
    if (path.isEmpty())
        return;
    auto project = std::make_unique<TVLBinderContents>();
    if (TVLProjectFolderFormat::readZippedBinderFilePath(path, project.get()))
        takeIfLoadable(std::move(project), path);
    else
        add(unreadableKind, relative(path), u"the zipped copy of the binder can't be read"_s);
}

bool ProjectCheck::hasDeadFavorites(const TVLBinderContents &project, const QString &source)
{
    const QList<int> ids = project.deadFavorites();
    for (const int id : ids)
        add(u"unknownFavorite"_s, relative(source),
            u"the favorites hold the id %1, which stands for no item; that keeps the binder from "
            "loading"_s.arg(id));
    return !ids.isEmpty();
}

void ProjectCheck::takeIfLoadable(std::unique_ptr<TVLBinderContents> project, const QString &source)
{
    if (hasDeadFavorites(*project, source)) {
        if (!mUnloadable) {
            mUnloadable = std::move(project);
            mUnloadableSource = source;
        }
    } else if (!mProject) {
        if (source != mFiles.binder)
            add(u"fallback"_s, relative(source),
                u"an opening falls back on this copy of the binder"_s);
        take(std::move(project), source);
    }
}

void ProjectCheck::take(std::unique_ptr<TVLBinderContents> project, const QString &source)
{
    mProject = std::move(project);
    mProjectSource = source;
    const TVL::BinderVersion version = mProject->sections().mInfo.mBinderVersion;
    mHasIds = version == TVL::BinderVersion1 || version == TVL::BinderVersion2;
}

void ProjectCheck::checkBinderNames()
{
    if (mFiles.binder.isEmpty())
        return;
    const QString chosen = QFileInfo(mFiles.binder).fileName();
    const QString expected =
        QFileInfo(TVLProjectFolderFormat::defaultBinderFilePath(mFiles.projectPath)).fileName();
    if (chosen != expected)
        add(u"binderName"_s, chosen,
            u"the binder's name is not the folder's: '%1'"_s.arg(expected));
    for (const QString &name : std::as_const(mFiles.allBinders)) {
        if (name != chosen)
            add(u"severalBinders"_s, name,
                u"a binder beside '%1', which is the one in use"_s.arg(chosen));
    }
}

void ProjectCheck::checkVersions()
{
    const TVLProjectInfo info = mProject ? mProject->sections().mInfo : TVLProjectInfo();
    if (mProject && info.mBinderVersion == TVL::NoBinderVersion)
        add(u"binderVersionUnknown"_s, relative(mProjectSource),
            u"the binder's version '%1' is unknown"_s.arg(info.mVersion));

    const QString where = u"Files/version.txt"_s;
    const QString filePath =
        TVLProjectFolderFormat::filesPath(mFiles.projectPath) + u"/version.txt"_s;
    if (!QFileInfo::exists(filePath)) {
        add(u"formatVersionMissing"_s, where, u"there is no version file"_s);
        return;
    }
    const int version = TVLProjectFolderFormat::extractVersionNumber(
        TVLCoreUtil::ReadUnicodeTextFile(filePath, nullptr));
    if (!TVL::isValidFormatVersion(version))
        add(u"formatVersionInvalid"_s, where, u"%1 is not a format version"_s.arg(version));
    else if (info.mBinderVersion != TVL::NoBinderVersion
             && TVL::toBinderVersion(TVL::FormatVersion(version)) != info.mBinderVersion)
        add(u"formatVersionMismatch"_s, where,
            u"the format version is %1, but the binder's version is '%2'"_s.arg(version).arg(
                info.mVersion));
}

// --- Items

void ProjectCheck::checkItems()
{
    tvlForEachNode(mProject->binderRoot(), [this](const TVLProjectNode *node) {
        checkIdentity(node);
        checkDate(node, node->mCreated, u"creation"_s);
        checkDate(node, node->mModified, u"modification"_s);
    });
}

void ProjectCheck::checkIdentity(const TVLProjectNode *node)
{
    if (node->mId >= 0) {
        const TVLProjectNode *&first = mById[node->mId];
        if (first)
            add(u"duplicateId"_s, identityOf(node),
                u"'%1' has the same id as '%2'"_s.arg(node->mTitle, first->mTitle));
        else
            first = node;
    } else if (mHasIds) {
        add(u"missingId"_s, identityOf(node), u"'%1' has no id"_s.arg(node->mTitle));
    }

    if (node->mUuid.isNull()) {
        add(u"nullUuid"_s, identityOf(node), u"'%1' has no uuid"_s.arg(node->mTitle));
        return;
    }
    const TVLProjectNode *&first = mByUuid[node->mUuid];
    if (first)
        add(u"duplicateUuid"_s, TUuid::toStringNoBraces(node->mUuid, true),
            u"'%1' has the same uuid as '%2'"_s.arg(node->mTitle, first->mTitle));
    else
        first = node;
}

void ProjectCheck::checkDate(const TVLProjectNode *node, const QDateTime &date, const QString &what)
{
    if (!date.isValid())
        add(u"invalidDate"_s, identityOf(node),
            u"'%1' has no valid %2 date"_s.arg(node->mTitle, what));
}

void ProjectCheck::checkSystemFolders()
{
    // Only a folder at top level is found as a system folder, but a second one is wrong anywhere.
    constexpr int SystemFolderCount = TVL::TrashFolder + 1;
    std::array<int, SystemFolderCount> all{};
    std::array<int, SystemFolderCount> top{};
    tvlForEachNode(mProject->binderRoot(), [&](const TVLProjectNode *node) {
        if (node->mNodeType >= SystemFolderCount)
            return;
        const auto type = std::size_t(node->mNodeType);
        ++all.at(type);
        if (node->mParent == mProject->binderRoot())
            ++top.at(type);
    });
    for (int i = 0; i < SystemFolderCount; ++i) {
        const QString word = TVL::wordOf(TVL::NodeType(i));
        if (top.at(std::size_t(i)) == 0)
            add(u"missingSystemFolder"_s, word, u"no item at top level is the %1"_s.arg(word));
        if (all.at(std::size_t(i)) > 1)
            add(u"doubledSystemFolder"_s, word,
                u"%1 items are of the type %2"_s.arg(all.at(std::size_t(i))).arg(word));
    }
}

// --- Files

void ProjectCheck::checkDocs()
{
    if (!mHasIds)
        return;
    const QDir directory(TVLProjectFolderFormat::filesDocsPath(mFiles.projectPath));
    const QStringList names = directory.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString &name : names) {
        if (leadingNumber(name) && !isOfItem(QUuid(), name))
            add(u"orphanedFile"_s, relative(directory.filePath(name)),
                u"the file belongs to no item"_s);
    }
}

bool ProjectCheck::isOfItem(const QUuid &uuid, const QString &fileName) const
{
    return uuid.isNull() ? mById.contains(leadingNumber(fileName).value_or(-1))
                         : mByUuid.contains(uuid);
}

bool ProjectCheck::checkDocsFolder()
{
    const QString path = TVLProjectFolderFormat::filesDocsPath(mFiles.projectPath);
    const QFileInfo folder(path);
    if (folder.isDir() && folder.isReadable() && folder.isExecutable())
        return true;
    if (!TVLCoreUtil::IsMissing(path))
        add(u"unreadableDocuments"_s, relative(path),
            u"the folder of the texts can't be looked into"_s);
    else if (areTextsRecorded())
        add(u"missingDocuments"_s, relative(path),
            u"the folder of the texts is gone, though there were texts to search by"_s);
    return false;
}

bool ProjectCheck::areTextsRecorded() const
{
    QFile file(TVLProjectFolderFormat::searchIndexesFilePath(mFiles.projectPath));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QXmlStreamReader reader(&file);
    while (reader.readNextStartElement()) {
        if (reader.name() != u"Document")
            continue; // What items lie in.
        const bool isItem = mById.contains(reader.attributes().value(u"ID"_s).toInt());
        if (hasRecordedText(&reader) && isItem)
            return true;
    }
    return false;
}

void ProjectCheck::checkTexts()
{
    if (!mHasIds || !checkDocsFolder())
        return;
    tvlForEachNode(mProject->binderRoot(), [&](TVLProjectNode *node) {
        if (node->mId < 0)
            return;
        if (node->canHaveText())
            checkText(node, TVL::MainText);
        checkText(node, TVL::NotesText);
        checkText(node, TVL::SynopsisText);
        TVLProjectLinksAndComments extras;
        if (!TVLProjectFolderFormat::parseLinksAndComments(mFiles.projectPath, node, &extras,
                                                           nullptr)) {
            const bool hasComments =
                !TVLCoreUtil::IsMissing(TVLProjectFolderFormat::filesDocsNodeTypeFilePath(
                    mFiles.projectPath, node->mId, TVL::CommentsFile));
            const TVL::DocumentType type = hasComments ? TVL::CommentsFile : TVL::LinksFile;
            add(u"unreadableComments"_s, filePathOf(node, type),
                u"the comments of '%1' can't be read"_s.arg(node->mTitle));
        }
    });
}

void ProjectCheck::checkText(TVLProjectNode *node, TVL::DocumentType type)
{
    QString error;
    if (!readItemText(mFiles.projectPath, node, type, &error))
        add(u"unreadableDocument"_s, filePathOf(node, type), oneLine(error));
}

QString ProjectCheck::filePathOf(const TVLProjectNode *node, TVL::DocumentType type) const
{
    return relative(
        TVLProjectFolderFormat::filesDocsNodeTypeFilePath(mFiles.projectPath, node->mId, type));
}

void ProjectCheck::checkNotes()
{
    QList<QPair<int, QTextDocument *>> notes;
    QStringList errors;
    const bool areRead = TVLProjectFolderFormat::readProjectNotes(mFiles.projectPath, &notes,
                                                                  mProject.get(), &errors);
    for (const auto &note : std::as_const(notes))
        delete note.second;
    if (areRead)
        return;
    for (const QString &error : std::as_const(errors))
        add(u"unreadableNotes"_s, u"Files/ProjectNotes"_s, oneLine(error));
}
