#include "Callable.h"
#include "TestMain.h"

#include "TVLAutoCompleteItem.h"
#include "TVLCollectionMetaData.h"
#include "TVLLabel.h"
#include "TVLMetaDataField.h"
#include "TVLProjectInfo.h"
#include "TVLProjectNotes.h"
#include "TVLReference.h"
#include "TVLSnapshotInfo.h"
#include "TVLStatusItem.h"
#include "TVLTargets.h"

using namespace Qt::StringLiterals;

/** What a program can call of a project's small records. */
class TstRecordInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void labelsAndStatusItems();
    void references();
    void customMetaData();
    void targets();
    void completions();
    void snapshotsAndComments();
    void projectNotes();
    void projectInfo();
    void collections();
    void whatACollectionDoes();
};

void TstRecordInterface::labelsAndStatusItems()
{
    areCallable([](const TVLLabel &label, const QList<TVLLabel> &labels) {
        gives<int>(label.mId);
        gives<QString>(label.mTitle);
        gives<QColor>(label.mColor);
        gives<TVLLabel>(TVLLabel::findLabelTitle(u"a"_s, labels));
        gives<TVLLabel>(TVLLabel::findLabelId(1, labels));
        gives<int>(TVLLabel::findNextLabelId(labels));
        gives<TVLLabel>(TVLLabel{1, u"a"_s, QColor()});
    });
    areCallable([](const TVLStatusItem &item, const QList<TVLStatusItem> &items) {
        gives<int>(item.mId);
        gives<QString>(item.mTitle);
        gives<TVLStatusItem>(TVLStatusItem::findStatusTitle(u"a"_s, items));
        gives<TVLStatusItem>(TVLStatusItem::findStatusId(1, items));
        gives<int>(TVLStatusItem::findNextStatusId(items));
        gives<TVLStatusItem>(TVLStatusItem{1, u"a"_s});
    });
}

void TstRecordInterface::references()
{
    areCallable([](TVLReference &reference, const QList<TVLReference> &references) {
        gives<int>(reference.mInternalLink);
        gives<QUrl>(reference.mUrl);
        gives<QString>(reference.mTitle);
        reference.setInternalLink(1);
        reference.setUrl(QUrl());
        const QByteArray bytes = TVLReference::fromReferenceList(references);
        gives<QList<TVLReference>>(TVLReference::toReferenceList(bytes));
    });
}

void TstRecordInterface::customMetaData()
{
    areCallable([](const TVLMetaDataField &field, const TVLCustomMetaDataSettings &settings) {
        gives<QString>(field.mId);
        gives<QString>(field.mTitle);
        gives<bool>(field.mWraps);
        gives<QColor>(field.mColor);
        gives<QStringList>(TVLMetaDataField::reservedIds());
        gives<bool>(settings.hasId(u"a"_s));
        gives<QStringList>(settings.ids());
        gives<TVLMetaDataField>(settings.value(0));
    });
    areCallable([](TVLCustomMetaDataSettings &settings, const TVLCustomMetaDataInfo &info) {
        settings.append(TVLMetaDataField());
        gives<QString>(info.mId);
        gives<QString>(info.mTitle);
        gives<QColor>(info.mColor);
        gives<QString>(info.mValue);
    });
}

void TstRecordInterface::targets()
{
    areCallable([](const TVLDraftTarget &target) {
        gives<QString>(target.mDeadline);
        gives<int>(target.mCount);
        gives<int>(target.mType);
        gives<bool>(target.mCountIncludedOnly);
        gives<bool>(target.mCurrentCompileGroupOnly);
        gives<bool>(target.mIgnoreDeadline);
        gives<bool>(target.mShowOverrun);
        gives<int>(target.mBuffer);
    });
    areCallable([](const TVLSessionTarget &target) {
        gives<QString>(target.mWritingDays);
        gives<int>(target.mCount);
        gives<int>(target.mType);
        gives<bool>(target.mCountDraftOnly);
        gives<bool>(target.mAllowNegatives);
        gives<TVLSessionTarget::ResetType>(target.mResetType);
        gives<bool>(target.mFromDeadline);
        gives<bool>(target.mCanWriteOnDeadlineDate);
        const QString word = TVLSessionTarget::toString(target.mResetType);
        gives<TVLSessionTarget::ResetType>(TVLSessionTarget::fromString(word));
    });
}

void TstRecordInterface::completions()
{
    areCallable([](const TVLAutoCompleteItem &item, const QList<TVLAutoCompleteItem> &items) {
        gives<int>(item.mScope);
        gives<QString>(item.mText);
        gives<qsizetype>(TVLAutoCompleteItem::indexOf(u"a"_s, items));
        gives<QStringList>(TVLAutoCompleteItem::toStringList(items));
    });
}

void TstRecordInterface::snapshotsAndComments()
{
    areCallable([](const TVLSnapshotInfo &snapshot, const TVLTextCommentLink &comment) {
        gives<QString>(snapshot.mTitle);
        gives<QDateTime>(snapshot.mDate);
        gives<TVLTextInternalLinkMap>(snapshot.mLinks);
        gives<QList<TVLTextCommentLink>>(snapshot.mComments);
        gives<QString>(comment.mIdentity);
        gives<bool>(comment.mIsFootnote);
        gives<bool>(comment.mIsCollapsed);
        gives<QColor>(comment.mColor);
        gives<int>(comment.mNumber);
        gives<QByteArray>(comment.mRtf);
    });
    areCallable([](const TVLTextInternalLinkMap &links, const TVLTextRange &range) {
        gives<QMap<TVLTextRange, int>>(links.mTargets);
        gives<QString>(links.mProject);
        gives<int>(range.mLocation);
        gives<int>(range.mLength);
    });
}

void TstRecordInterface::projectNotes()
{
    areCallable([](TVLProjectNotes &notes) {
        notes.setModified(true);
        gives<bool>(notes.isModified());
        gives<bool>(notes.notesModified());
        gives<QList<QPair<int, QTextDocument *>>>(notes.mNotes);
    });
}

void TstRecordInterface::projectInfo()
{
    areCallable([](const TVLProjectInfo &info) {
        gives<TVL::BinderVersion>(info.mBinderVersion);
        gives<QString>(info.mVersion);
        gives<QString>(info.mDevice);
        gives<QDateTime>(info.mModified);
        gives<QUuid>(info.mModId);
        gives<QUuid>(info.mSyncId);
        gives<QUuid>(info.mChecksumsId);
        gives<bool>(info.mIsTemplate);
        gives<bool>(info.mIsNewProject);
    });
}

void TstRecordInterface::collections()
{
    areCallable([](const TVLCollectionMetaData &collection) {
        gives<QString>(collection.mId);
        gives<QString>(collection.mTitle);
        gives<QString>(collection.mSearchText);
        gives<QColor>(collection.mColor);
        gives<TVL::CollectionType>(collection.mType);
        gives<int>(collection.mSearchOperator);
        gives<TVL::DocumentProperty>(collection.mSearchProperty);
        gives<int>(collection.mSearchScope);
        gives<int>(collection.mSearchCompile);
        gives<Qt::CaseSensitivity>(collection.mCaseSensitivity);
        gives<QList<int>>(collection.mIds);
    });
    areCallable([](TVLCollectionMetaData &collection) {
        collection.mSearchOperator = 3;
        collection.mSearchOperator = TVL::WholeWordOperator;
        collection.mSearchScope = 2 | 4;
        collection.mSearchScope = TVL::DraftScope | TVL::ExcludeTrashScope;
        collection.mSearchCompile = 2;
        collection.mSearchCompile = TVL::ExcludedFromCompile;
    });
}

void TstRecordInterface::whatACollectionDoes()
{
    areCallable([](const TVLCollectionMetaData &collection) {
        gives<QString>(TVLCollectionMetaData::generateIdentity());
        gives<QColor>(TVLCollectionMetaData::mBinderColor);
        gives<QColor>(TVLCollectionMetaData::mRecentSearchCollColor);
        TVLCollectionMetaData::setRecentSearchCollectionColor(QColor());
        gives<QColor>(collection.color());
        gives<bool>(TVLCollectionMetaData::isSyncResultsCollectionTitle(u"a"_s));
        gives<bool>(collection.isSyncResultsCollection());
        gives<bool>(collection.isSuitableExternalFolderSync());
    });
}

TVL_TEST(TstRecordInterface)
#include "tst_recordinterface.moc"
