#pragma once

#include "ProjectOpener.h"
#include "TVLBinderContents.h"

#include <QDir>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <memory>
#include <optional>

struct TVLSnapshotInfo;

/** Something that is wrong with a project. */
struct Problem
{
    QString kind; ///< A word that stays the same from version to version.
    /** A path within the project, an item as `#id` or uuid, a collection's title, or the binder's
     * word for a part of it. */
    QString where;
    QString text; ///< What is wrong, for people.
};

/** An item as the tool names it: `#id`, or its uuid if it has no id. */
[[nodiscard]] QString identityOf(const TVLProjectNode *node);

/**
 * The number that the name of an item's file or folder begins with, -1 for one that is larger than
 * any id; nothing for another name. With a @p rest given, only if that is all that follows.
 */
[[nodiscard]] std::optional<int> leadingNumber(const QString &name, const QString &rest = {});

/**
 * Reads all of a project and tells what is wrong with it. Nothing on disk is changed.
 *
 * Kinds of problems:
 * - the binder: `noBinder`, `binderUnreadable`, `autosaveUnreadable`, `backupUnreadable`,
 *   `fallback` (an opening would take a zipped copy), `binderName`, `severalBinders`
 * - versions: `binderVersionUnknown`, `formatVersionMissing`, `formatVersionInvalid`,
 *   `formatVersionMismatch`
 * - items: `missingId`, `duplicateId`, `nullUuid`, `duplicateUuid`, `invalidDate`,
 *   `missingSystemFolder`, `doubledSystemFolder`
 * - what items refer to: `unknownLabel`, `unknownStatus`, `unknownKeyword`, `unknownField` (of
 *   custom meta-data), `unknownReference`, `unknownChildTemplate`
 * - the project's tables: `duplicateLabel`, `duplicateStatus`, `duplicateKeyword`,
 * `duplicateField`, `unknownDefaultLabel`, `unknownDefaultStatus`
 * - texts: `unreadableDocuments` (the folder of all), `missingDocuments` (there is none, though
 *   texts were recorded), `unreadableDocument` (a main text, notes or a synopsis),
 *   `unreadableComments`, `unreadableNotes` (of the project)
 * - snapshots: `unreadableSnapshots` (the folder, or the list of an item's), `missingSnapshots`
 *   (texts without a list), `unreadableSnapshot` (the text of one), `missingSnapshot` (it is gone)
 * - what was recorded of texts: `changedDocument` and `missingDocument` (whose file isn't what its
 *   recorded hash says, or is gone), `unreadableHashes`, `unreadableSearchIndex`
 * - what refers to items: `unknownFavorite` (no opening takes that binder), `unknownReference`
 * (also of the project), `unknownBackdrop`, `unknownTemplateFolder`, `unknownCollectionMember`,
 *   `orphanedFile`, `orphanedSnapshots`
 *
 * When a zipped copy is what an opening would take, its items are the ones that are checked. When
 * an opening would take nothing and yet a binder can be read, it is that one's items.
 */
class ProjectCheck
{
public:
    explicit ProjectCheck(const BinderFiles &files);

    [[nodiscard]] QList<Problem> run();

private:
    void add(const QString &kind, const QString &where, const QString &text);
    [[nodiscard]] QString relative(const QString &path) const;

    void readBinder();
    void readPlainBinder();
    [[nodiscard]] bool hasDeadFavorites(const TVLBinderContents &project, const QString &source);
    void takeIfLoadable(std::unique_ptr<TVLBinderContents> project, const QString &source);
    void take(std::unique_ptr<TVLBinderContents> project, const QString &source);
    void readZippedBinder(const QString &path, const QString &unreadableKind);
    void checkBinderNames();
    void checkVersions();
    void checkItems();
    void checkIdentity(const TVLProjectNode *node);
    void checkDate(const TVLProjectNode *node, const QDateTime &date, const QString &what);
    void checkSystemFolders();

    void checkTables();
    void checkDefaults();
    void checkWhatItemsReferTo();
    void checkReferences(const QList<TVLReference> &references, const QString &where);
    void checkBackdrop();
    void checkTemplateFolder();
    void checkCollections();
    template <typename Record>
    void checkIdsOf(const QList<Record> &records, const QString &kind, const QString &where);

    void checkDocs();
    [[nodiscard]] bool checkDocsFolder();
    [[nodiscard]] bool areTextsRecorded() const;
    void checkTexts();
    void checkText(TVLProjectNode *node, TVL::DocumentType type);
    [[nodiscard]] QString filePathOf(const TVLProjectNode *node, TVL::DocumentType type) const;
    void checkNotes();
    void checkSnapshots();
    void checkSnapshotsOf(int id, const QString &folderPath);
    void checkSnapshot(const QDir &folder, const TVLSnapshotInfo &snapshot);
    [[nodiscard]] bool isOfItem(const QUuid &uuid, const QString &fileName) const;

    void checkHashes();
    void checkHash(const QUuid &uuid, const QString &name, const QByteArray &hash);
    void checkSearchIndex();

    BinderFiles mFiles;
    QList<Problem> mProblems;
    std::unique_ptr<TVLBinderContents> mProject; ///< Null until a binder was read.
    QString mProjectSource; ///< The file that it was read from.
    /** The first binder that can be read, but not be loaded; null for none. */
    std::unique_ptr<TVLBinderContents> mUnloadable;
    QString mUnloadableSource;
    bool mHasIds = false; ///< Whether items of the binder's version have ids.
    QHash<int, const TVLProjectNode *> mById;
    QHash<QUuid, const TVLProjectNode *> mByUuid;
};
