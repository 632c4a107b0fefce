#pragma once

#include "TVLBinderProject.h"
#include "TVLBinderText.h"
#include "TVLReference.h"
#include "TVLSnapshotInfo.h"

#include <QMap>
#include <QXmlStreamWriter>

class QTextDocument;
class TVLKeywordModel;
class TVLProjectNodeProperties;

/**
 * Writes a binder, and the small XML files that lie beside it. The same project gives the same
 * bytes, except for what has no lasting value of its own: a node without a uuid gets a fresh one on
 * the page at each write.
 *
 * The writer has no error path of its own: give it a device whose failures you can see, such as a
 * buffer. What it leaves out, because nothing could read it again or nobody would find it, it says
 * in the log.
 */
class TVL_EXPORT TVLBinderWriter : public QXmlStreamWriter
{
public:
    TVLBinderWriter();
    /** Writes to @p device, which stays the caller's and must be open. */
    explicit TVLBinderWriter(QIODevice *device);
    Q_DISABLE_COPY_MOVE(TVLBinderWriter)

    /**
     * The ways of writing text, hiding those of the base class: a character that XML can't hold
     * would leave a file that nothing can read again. Control characters are dropped, half
     * surrogate pairs and noncharacters become U+FFFD.
     */
    void writeCharacters(const QString &text);
    void writeTextElement(const QString &name, const QString &text);
    void writeAttribute(const QString &name, const QString &value);
    void writeCDATA(const QString &text);

    /** Writes the whole document; @p root stands for the tree and has no element of its own. */
    void writeProject(const TVLBinderProject *project, const TVLProjectNode *root);

    /** Writes the document's start and the root element with its attributes. */
    void writeStartTavelinorProjectTag(const TVLBinderProject *project, bool isTemplate);
    void writeEndTavelinorProjectTag();

    void writeNodeList(const TVLProjectNode *root, bool mobile);
    /** Writes an item and all below it. */
    void writeNode(const TVLProjectNode *node, bool mobile);

    void writeCorkboardAndOutliner(const TVLProjectNode *node);
    void writeKeywords(const TVLProjectNode *node);
    void writeReferences(const QList<TVLReference> &references);
    void writeCustomMetaData(const QMap<QString, QString> &values);

    void writeLabels(const QString &title, int defaultId, const QList<TVLLabel> &labels);
    void writeStatusItems(const QString &title, int defaultId, const QList<TVLStatusItem> &items);
    void writeTemplateFolderId(const TVLBinderProject *project);
    /** Writes the tree of all keywords, which come as TVLBinderSections tells. */
    void writeKeywords(const QList<TVLBinderKeyword> &keywords);
    /** Writes the tree of all keywords of a keyword model. */
    void writeKeywords(const TVLKeywordModel *keywords);
    void writeCollections(const QList<TVLCollectionMetaData> &collections);
    void writeCustomMetaDataSettings(const TVLCustomMetaDataSettings &settings);
    /** Writes what the project says of its title and author; nothing when it says nothing. */
    void writeProjectProperties(const TVLBinderProject *project);
    void writeProjectTargets(const TVLDraftTarget &draft, const TVLSessionTarget &session,
                             bool notify);
    /** Writes the ids of the favorites, or nothing when there are none. An id that no item would
     * have for the reader is left out: it would cost the whole binder. */
    void writeFavorites(const TVLBinderProject *project);
    void writeAutoCompleteList(const QList<TVLAutoCompleteItem> &items);
    void writeBackupSettings(bool included);
    /** Writes the id of an item, an int, or the path of an image, a QString; nothing for all else,
     * and nothing for a negative id or an empty path. */
    void writeFullScreenBackdrop(const QVariant &value);
    void writeProjectReferences(const QList<TVLReference> &references);
    /** Writes the page set-up. */
    void writePrintSettings(const QPrinter *printer);
    /**
     * Writes the raw text of the user's data past the XML, straight to the device. Text that would
     * make the binder unreadable is left out.
     */
    void writeUserProjectData(const QString &text);

    /** @name Files beside the binder @{ */
    /**
     * Writes `Comments`, or nothing for an empty list. The element alone: a @p standalone one,
     * which has a version, needs the document's start and end around it.
     */
    void writeComments(const QList<TVLTextCommentLink> &comments, bool standalone);
    /** Writes the index of an item's snapshots, a whole document. */
    void writeSnapshots(const QList<TVLSnapshotInfo> &snapshots);
    /** Writes the index of the project's notes, a whole document: each note's id and title. */
    void writeProjectNotes(const QList<QPair<int, QTextDocument *>> &notes);
    /** @} */

private:
    // Below this depth items stand unformatted: indenting them would make a deeply nested binder,
    // and the time that it takes, grow with the square of its depth.
    static constexpr int DeepestIndentedItem = 100;

    struct ListTags;
    template <typename Item>
    void writeListSection(const ListTags &tags, const QString &title, int defaultId,
                          const QList<Item> &items);
    void writeRootStart(const TVLProjectInfo &info, bool mobile, bool isTemplate);
    void writeTemplateFolder(const QUuid &uuid);
    void writeProperties(const QMap<QString, QString> &properties);
    void writeFavorites(QList<int> ids, const QMap<int, QUuid> &items);
    void writeItemStart(const TVLProjectNode *node, bool mobile);
    void writeMetaData(const TVLProjectNodeProperties &properties, bool mobile);
    void writeTextSettings(const TVLProjectNodeProperties &properties);
    void writeTarget(const TVLProjectNodeProperties &properties);
    void writeMediaSettings(const TVLProjectNodeProperties &properties);
    void writeFreeformDocuments(const TVLProjectNode *node);
    void writeCollection(const TVLCollectionMetaData &collection);
    void writeDraftTarget(const TVLDraftTarget &target);
    void writeSessionTarget(const TVLSessionTarget &target);
    void writeComment(const TVLTextCommentLink &comment);
    void writeStartIndex(const QString &tag);
    void writeEndIndex();
    /** The text as XML can hold it; what that leaves out is told. */
    [[nodiscard]] static QString xmlText(const QString &text);
    static void tellLeftOut(const QString &what);
    void writeDateAttribute(const QString &name, const QDateTime &date);
    void writeUuidAttribute(const QString &name, const QUuid &uuid);
    void writeYes(const QString &tag, bool flag);
    void writeFlagAttribute(const QString &name, bool flag);
    void writeCountTypeAttribute(int type);
    void writeTextUnlessEmpty(const QString &tag, const QString &text);
    void writeSelection(const QString &tag, const QPair<int, int> &selection);

    TVL::BinderVersion mBinderVersion = TVL::BinderVersion2;
    TVLDateFormatter mDates;
};
