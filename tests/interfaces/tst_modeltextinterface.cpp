#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectModel.h"
#include "TVLTextDocument.h"

using namespace Qt::StringLiterals;

/** What a program can call of a project model about documents, counts, snapshots and notes. */
class TstModelTextInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void referencesToDocuments();
    void loadingAndSaving();
    void textsOfItems();
    void inspectorNotes();
    void counts();
    void sumsOverAProject();
    void textsMadeOfTexts();
    void snapshots();
    void projectNotes();
};

void TstModelTextInterface::referencesToDocuments()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, TVLTextDocument *document) {
        gives<TVLTextDocument *>(model.referenceItem(index, TVL::NotesText));
        gives<TVLTextDocument *>(model.referenceText(index));
        gives<TVLTextDocument *>(model.referenceNote(index));
        gives<TVLTextDocument *>(model.referenceSynopsis(index));
        model.dereferenceItem(document);
    });
}

void TstModelTextInterface::loadingAndSaving()
{
    areCallable([](const TVLProjectModel &model, TVLProjectNode *node, QStringList *errors) {
        model.loadDocuments(node);
        gives<bool>(model.saveDocuments(node, true, errors));
    });
    areCallable([](TVLProjectModel &model, const QModelIndex &index, QTextDocument *document) {
        TVLProjectModel::markDocumentContentsDirty(document);
        model.scheduleDocTextChange(index);
    });
}

void TstModelTextInterface::textsOfItems()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, QTextDocument *document) {
        gives<QString>(model.synopsis(index));
        gives<bool>(model.setSynopsis(index, u"a"_s));
        gives<QString>(model.documentNoteAsPlainText(index));
        gives<bool>(model.isDocumentNoteEmpty(index));
        gives<QString>(model.documentPlainText(index, true));
        gives<bool>(model.overwriteText(index, document));
    });
}

void TstModelTextInterface::inspectorNotes()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, const TVLTextRange &range,
                   const TVLTextCommentLink &link) {
        gives<bool>(model.hasInspectorNotes(index));
        gives<QStringList>(model.inspectorNotesToPlainText(index));
        gives<bool>(model.setInspectorNote(index, range, link));
        gives<bool>(model.removeInspectorNotes(index, QList<int>{1, 2}));
        gives<bool>(model.removeInspectorNote(index, 1));
    });
}

void TstModelTextInterface::counts()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index) {
        gives<int>(model.wordCount(index, true, true));
        gives<int>(model.characterCount(index));
        gives<int>(model.totalWordCount(index, true, true));
        gives<int>(model.totalCharacterCount(index));
        gives<int>(model.sessionWordCount(index, true, true));
        gives<int>(model.sessionCharacterCount(index));
        gives<int>(model.countActual(index, true, true));
        gives<double>(model.progress(index, true, true));
        gives<double>(model.progressPercent(index));
        model.resetSessionCounts();
    });
}

void TstModelTextInterface::sumsOverAProject()
{
    areCallable([](TVLProjectModel *model) {
        const auto all = TVLProjectModel::wordCharSessionCount(model, true, true, true);
        const auto own = model->wordCharSessionCount(true, true, true);
        gives<int>(all.mDraftWords);
        gives<int>(all.mDraftCharacters);
        gives<int>(own.mSessionWords);
        gives<int>(own.mSessionCharacters);
        gives<QString>(TVLProjectModel::statisticsText(1, 2, 3, TVL::WordsTarget));
    });
}

void TstModelTextInterface::textsMadeOfTexts()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, QTextDocument *document) {
        gives<QString>(model.calcTitleFromText(document, true, true));
        gives<QString>(model.calcTitleFromText(index));
        gives<QString>(model.autoGenerateSynopsisText(index));
        gives<QList<QModelIndex>>(model.searchInSynopsis(u"a"_s, true));
    });
}

void TstModelTextInterface::snapshots()
{
    areCallable([](TVLProjectModel &model, const QModelIndex &index, const TVLSnapshotInfo &info,
                   QTextDocument *document, QString *error) {
        gives<QList<TVLSnapshotInfo>>(model.snapshots(index));
        gives<bool>(model.addSnapshot(index, info));
        gives<bool>(model.addSnapshot(index, u"a"_s));
        gives<bool>(model.addSnapshotWithDocument(index, info, document, error));
        gives<bool>(model.addSnapshotWithExternalDocument(index, info, document, error));
        gives<bool>(model.loadSnapshot(index, info, document));
        gives<bool>(model.loadSnapshotIntoMainText(index, info));
        gives<bool>(model.setSnapshotTitle(index, QDateTime(), u"a"_s));
        gives<bool>(model.removeSnapshot(index, info));
    });
}

void TstModelTextInterface::projectNotes()
{
    areCallable([](TVLProjectModel &model, QStringList *errors) {
        gives<QTextDocument *>(model.projectNote(1));
        gives<QList<int>>(model.projectNoteIdentities());
        gives<QString>(model.projectNoteTitle(1));
        gives<int>(model.addProjectNote(u"a"_s));
        gives<bool>(model.renameProjectNote(1, u"a"_s));
        gives<bool>(model.moveProjectNote(0, 1));
        gives<bool>(model.removeProjectNote(1, errors));
        gives<bool>(model.hasProjectNoteId(1));
    });
}

TVL_TEST(TstModelTextInterface)
#include "tst_modeltextinterface.moc"
