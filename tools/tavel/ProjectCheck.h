#pragma once

#include "ProjectOpener.h"
#include "ReadOnlyProject.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <memory>

/** Something that is wrong with a project. */
struct Problem
{
    QString kind; ///< A word that stays the same from version to version.
    QString
        where; ///< A path within the project, an item as `#id` or uuid, or a collection's title.
    QString text; ///< What is wrong, for people.
};

/**
 * Reads all of a project and tells what is wrong with it. Nothing on disk is changed.
 *
 * Kinds of problems:
 * - the binder: `noBinder`, `binderUnreadable`, `autosaveUnreadable`, `backupUnreadable`,
 *   `fallback` (an opening would take a zipped copy), `binderName`, `severalBinders`
 * - versions: `binderVersionUnknown`, `formatVersionMissing`, `formatVersionInvalid`,
 *   `formatVersionMismatch`
 * - items: `missingId`, `duplicateId`, `nullUuid`, `duplicateUuid`, `invalidDate`, `unknownLabel`,
 *   `unknownStatus`, `missingSystemFolder`, `doubledSystemFolder`
 * - texts: `unreadableDocument` (a main text, notes or a synopsis), `unreadableComments`
 * - what refers to items: `unknownCollectionMember`, `orphanedFile`, `orphanedSnapshots`
 *
 * When a zipped copy is what an opening would take, its items are the ones that are checked.
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
    void take(std::unique_ptr<ReadOnlyProject> project, const QString &source);
    void readZippedBinder(const QString &path, const QString &unreadableKind);
    void checkBinderNames();
    void checkVersions();
    void checkItems();
    void checkIdentity(const TVLProjectNode *node);
    void checkDate(const TVLProjectNode *node, const QDateTime &date, const QString &what);
    void checkSystemFolders();
    void checkCollections();
    void checkDocs();
    void checkTexts();
    void checkText(TVLProjectNode *node, TVL::DocumentType type);
    [[nodiscard]] QString filePathOf(const TVLProjectNode *node, TVL::DocumentType type) const;
    void checkSnapshots();

    BinderFiles mFiles;
    QList<Problem> mProblems;
    std::unique_ptr<ReadOnlyProject> mProject; ///< Null until a binder was read.
    QString mProjectSource; ///< The file that it was read from.
    bool mHasIds = false; ///< Whether items of the binder's version have ids.
    QHash<int, const TVLProjectNode *> mById;
    QHash<QUuid, const TVLProjectNode *> mByUuid;
};
