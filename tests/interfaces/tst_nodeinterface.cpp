#include "Callable.h"
#include "TestMain.h"

#include "TVLProjectNode.h"
#include "TVLTextDocument.h"

#include <QPixmap>

/** What a program can call of the nodes of the tree and their properties. */
class TstNodeInterface : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theIdentityAndTheKind();
    void theValuesOfAnItem();
    void theFlagsAndCounts();
    void theCorkboard();
    void whatARecordDoes();
    void aNodeOfTheTree();
    void theIndexCardImage();
    void findingNodesByRows();
};

void TstNodeInterface::theIdentityAndTheKind()
{
    areCallable([](const TVLProjectNodeProperties &item) {
        gives<int>(item.mId);
        gives<QUuid>(item.mUuid);
        gives<QString>(item.mTitle);
        gives<TVL::NodeType>(item.mNodeType);
        gives<int>(item.mTargetType);
        gives<int>(item.mLabelId);
        gives<int>(item.mStatusId);
        gives<int>(item.mDefaultChildTemplateId);
        gives<QString>(item.mFileExtension);
        gives<QString>(item.mIndexCardImageFileExtension);
        gives<QString>(item.mIconFileName);
        gives<QString>(item.mPreferredExternalApplication);
    });
    areCallable([](TVLProjectNodeProperties &item) {
        item.mNodeType = TVL::WebArchive;
        item.mTargetType = 1;
        item.mTargetType = TVL::CharactersTarget;
    });
}

void TstNodeInterface::theValuesOfAnItem()
{
    areCallable([](const TVLProjectNodeProperties &item) {
        gives<QMap<QString, QString>>(item.mCustomMetaData);
        gives<int>(item.mTextSelection.first);
        gives<int>(item.mTextSelection.second);
        gives<int>(item.mNotesTextSelection.first);
        gives<int>(item.mNotesTextSelection.second);
        gives<QDateTime>(item.mCreated);
        gives<QDateTime>(item.mModified);
        gives<QDateTime>(item.mRestoredSnapshotDate);
        gives<QList<int>>(item.mKeywords);
        gives<QList<TVLReference>>(item.mReferences);
        gives<QString>(item.mTextMode);
        gives<QByteArray>(item.mTypingAttributes);
        gives<QString>(item.mOriginalUrl);
        gives<int>(item.mTarget);
        gives<int>(item.mTargetBuffer);
        gives<int>(item.mCurrentPdfPage);
        gives<double>(item.mImageScaleFactor);
        gives<int>(item.mImageRotation);
    });
}

void TstNodeInterface::theFlagsAndCounts()
{
    areCallable([](const TVLProjectNodeProperties &item) {
        gives<bool>(item.mImageScalesProportionally);
        gives<bool>(item.mIncludeInCompile);
        gives<bool>(item.mPageBreakBefore);
        gives<bool>(item.mCompileAsIs);
        gives<bool>(item.mIsTemplateFolder);
        gives<bool>(item.mShowSynopsisImage);
        gives<bool>(item.mIgnoresTitlePrefixAndSuffix);
        gives<bool>(item.mTargetNotify);
        gives<bool>(item.mTargetAllowOver);
        gives<bool>(item.mIsFavorite);
        gives<bool>(item.mIsAlias);
        gives<bool>(item.mHasText);
        gives<bool>(item.mHasSynopsis);
        gives<bool>(item.mHasDocumentNote);
        gives<bool>(item.mHasSnapshots);
        gives<int>(item.mWordCount);
        gives<int>(item.mCharacterCount);
        gives<int>(item.mSessionWordCount);
        gives<int>(item.mSessionCharacterCount);
    });
}

void TstNodeInterface::theCorkboard()
{
    areCallable([](const TVLProjectNodeProperties &item) {
        gives<QSet<int>>(item.mSelectedSubdocumentIds);
        gives<bool>(item.mFreeformMode);
        gives<QHash<int, TVLFreeformPositionInfo>>(item.mFreeformPositions);
    });
    areCallable([](const TVLFreeformPositionInfo &position) {
        gives<int>(position.mId);
        gives<QPointF>(position.mPosition);
        gives<QString>(position.mTimeStamp);
    });
}

void TstNodeInterface::whatARecordDoes()
{
    areCallable([](TVLProjectNodeProperties &item, const TVLProjectNodeProperties &other) {
        gives<bool>(other.isValid());
        item.updateModified();
        item.removeId(1);
        item.applyMobileProperties(other);
        item.applyDesktopProperties(other);
        item.applyAllPreserveIDs(other);
        const TVLProjectNodeProperties copy = item;
        gives<bool>(copy == other);
    });
}

void TstNodeInterface::aNodeOfTheTree()
{
    areCallable([](QPair<int, QUuid> identity, TVLProjectNode *parent) {
        const TVLProjectNode last(identity, parent);
        const TVLProjectNode first(identity, parent, 0);
        const TVLProjectNodeProperties &properties = first;
        gives<int>(properties.mId);
    });
    areCallable([](TVLProjectNode *node) {
        gives<QList<TVLProjectNode *>>(node->mChildren);
        gives<TVLProjectNode *>(node->mParent);
        gives<TVLTextDocument *>(node->mTextDocument);
        gives<TVLTextDocument *>(node->mSynopsisDocument);
        gives<TVLTextDocument *>(node->mNotesDocument);
        delete node;
    });
}

void TstNodeInterface::theIndexCardImage()
{
    areCallable([](TVLProjectNode *node, const TVLProjectNode *seen) {
        gives<QSize>(TVLProjectNode::defaultIndexCardSize());
        node->setIndexCardPixmap(QPixmap());
        gives<QPixmap>(seen->indexCardPixmap());
        gives<bool>(seen->hasIndexCardPixmap());
        node->clearIndexCardPixmap();
    });
}

void TstNodeInterface::findingNodesByRows()
{
    areCallable([](TVLProjectNode *node) {
        gives<int>(TVLProjectNode::childLevel(node));
        gives<QList<TVLProjectNode *>>(TVLProjectNode::ancestors(node));
        gives<QList<int>>(node->parentRowPositions());
        gives<TVLProjectNode *>(node->findNodeViaRowPositions(QList<int>{1, 2}));
        gives<QList<int>>(node->childIDs());
    });
}

TVL_TEST(TstNodeInterface)
#include "tst_nodeinterface.moc"
