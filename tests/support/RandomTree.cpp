#include "RandomTree.h"

#include "TVLBinderText.h"
#include "TVLProjectNode.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

QDateTime randomDate(QRandomGenerator *random)
{
    // Whole seconds, in a range with summer and winter time.
    return QDateTime::fromSecsSinceEpoch(random->bounded(1'000'000'000, 2'000'000'000));
}

QUuid randomUuid(QRandomGenerator *random)
{
    quint32 parts[4];
    random->fillRange(parts);
    parts[0] |= 1; // Never null.
    return QUuid(parts[0], ushort(parts[1]), ushort(parts[1] >> 16), uchar(parts[2]),
                 uchar(parts[2] >> 8), uchar(parts[2] >> 16), uchar(parts[2] >> 24),
                 uchar(parts[3]), uchar(parts[3] >> 8), uchar(parts[3] >> 16),
                 uchar(parts[3] >> 24));
}

QList<TVLReference> randomReferences(QRandomGenerator *random, int nodes)
{
    QList<TVLReference> references;
    for (int i = random->bounded(3); i >= 0; --i) {
        TVLReference reference;
        reference.mTitle = randomText(random, 20);
        if (random->bounded(2))
            reference.setInternalLink(random->bounded(nodes));
        else
            reference.setUrl(
                QUrl(u"https://example.org/a b/%1?q=%2#\u00fc"_s.arg(random->bounded(100))
                         .arg(random->bounded(100))));
        references.append(reference);
    }
    return references;
}

class Maker
{
public:
    explicit Maker(const RandomTreeOptions &options)
        : mOptions(options)
        , mRandom(options.seed)
    {
    }

    std::unique_ptr<TVLProjectNode> make()
    {
        auto root =
            std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, randomUuid(&mRandom)), nullptr);
        QList<TVLProjectNode *> parents = {root.get()};
        for (int i = 0; i < mOptions.nodes; ++i) {
            TVLProjectNode *parent = parents.at(mRandom.bounded(int(parents.size())));
            const int row = mRandom.bounded(int(parent->mChildren.size()) + 1);
            const int id = mOptions.withIds ? i : -1;
            auto *node = new TVLProjectNode({id, randomUuid(&mRandom)}, parent, row);
            fill(node);
            if (TVLProjectNode::childLevel(node) < mOptions.deepest)
                parents.append(node);
        }
        tvlForEachNode(root.get(), [this](TVLProjectNode *node) { fillCorkboard(node); });
        return root;
    }

private:
    bool chance(int oneIn) { return mRandom.bounded(oneIn) == 0; }
    QString text(int longest) { return randomText(&mRandom, longest); }
    QPair<int, int> selection() { return {mRandom.bounded(1000), mRandom.bounded(1000)}; }

    void fill(TVLProjectNode *node)
    {
        node->mTitle = text(30);
        node->mNodeType = TVL::NodeType(mRandom.bounded(10));
        node->mCreated = randomDate(&mRandom);
        node->mModified = randomDate(&mRandom);
        node->mLabelId = mRandom.bounded(-1, 20);
        node->mStatusId = mRandom.bounded(-1, 20);
        node->mIncludeInCompile = chance(2);
        node->mFileExtension = chance(3) ? u"png"_s : QString();
        node->mIconFileName = chance(3) ? text(10) : QString();
        node->mPageBreakBefore = chance(3);
        node->mCompileAsIs = chance(3);
        if (chance(3))
            node->mNotesTextSelection = selection();
        node->mShowSynopsisImage = chance(3);
        node->mIndexCardImageFileExtension = chance(4) ? u"jpg"_s : QString();
        node->mIgnoresTitlePrefixAndSuffix = chance(3);
        node->mPreferredExternalApplication = chance(4) ? text(20) : QString();
        for (int i = mRandom.bounded(3); i > 0; --i)
            node->mCustomMetaData.insert(u"field%1"_s.arg(mRandom.bounded(9)), text(40));
        for (int i = mRandom.bounded(4); i > 0; --i)
            node->mKeywords.append(mRandom.bounded(50));
        if (chance(3))
            node->mReferences = randomReferences(&mRandom, mOptions.nodes);
        if (chance(4))
            node->mDefaultChildTemplateId = mRandom.bounded(mOptions.nodes);
        if (node->mNodeType == TVL::Folder || node->mNodeType == TVL::Text)
            fillText(node);
        if (node->mNodeType == TVL::Image || node->mNodeType == TVL::PDF
            || node->mNodeType == TVL::WebArchive)
            fillMedia(node);
    }

    void fillText(TVLProjectNode *node)
    {
        node->mTextMode = chance(4) ? u"Script"_s : QString();
        if (chance(2))
            node->mTextSelection = selection();
        if (chance(3))
            node->mTypingAttributes = text(20).toUtf8();
        node->mTarget = mRandom.bounded(100000);
        node->mTargetType = TVL::TargetType(mRandom.bounded(2));
        node->mTargetNotify = chance(2);
        node->mTargetAllowOver = chance(2);
        node->mTargetBuffer = mRandom.bounded(3) * 10;
    }

    void fillMedia(TVLProjectNode *node)
    {
        if (node->mNodeType == TVL::Image) {
            node->mImageScaleFactor = chance(2) ? 1.0 : (1 + mRandom.bounded(40)) / 8.0;
            node->mImageRotation = mRandom.bounded(4);
            node->mImageScalesProportionally = chance(2);
        } else if (node->mNodeType == TVL::PDF) {
            node->mCurrentPdfPage = 1 + mRandom.bounded(99);
        }
        node->mOriginalUrl =
            chance(2) ? u"https://example.org/?a=1&b=%1"_s.arg(text(5)) : QString();
        node->mIsAlias = chance(3);
    }

    void fillCorkboard(TVLProjectNode *node)
    {
        if (node->mChildren.isEmpty() || !mOptions.withIds)
            return;
        node->mFreeformMode = chance(3);
        for (const TVLProjectNode *child : std::as_const(node->mChildren)) {
            if (chance(4))
                node->mSelectedSubdocumentIds.insert(child->mId);
        }
        if (!chance(3))
            return;
        for (const TVLProjectNode *child : std::as_const(node->mChildren)) {
            const QPointF position(mRandom.bounded(4000) / 8.0, mRandom.bounded(4000) / 8.0);
            node->mFreeformPositions.insert(
                child->mId,
                {child->mId, position, tvlDateTimeToString(randomDate(&mRandom), false)});
        }
    }

    const RandomTreeOptions mOptions;
    QRandomGenerator mRandom;
};

} // namespace

QString randomText(QRandomGenerator *random, int longest)
{
    static const char32_t samples[] = {U'a',  U'Z',      U' ',      U'<', U'&', U'>',         U'"',
                                       U'\'', U'\t',     U'\n',     U'é', U'ß', U'Ж',         U'ع',
                                       U'漢', U'\u200d', U'\ufffd', U'𝄞', U'😀', U'\U0010fffd'};
    QString text;
    for (int i = random->bounded(longest + 1); i > 0; --i) {
        const char32_t sample = samples[random->bounded(int(std::size(samples)))];
        text.append(QStringView(QChar::fromUcs4(sample)));
    }
    return text;
}

std::unique_ptr<TVLProjectNode> makeRandomTree(const RandomTreeOptions &options)
{
    return Maker(options).make();
}

bool equalTrees(const TVLProjectNode *left, const TVLProjectNode *right, QString *where)
{
    const TVLProjectNode *const leftRoot = left;
    const TVLProjectNode *const rightRoot = right;
    const auto differ = [&](const QString &what) {
        *where = u"%1 of item %2"_s.arg(what).arg(left ? left->mId : -1);
        return false;
    };
    for (;;) {
        left = left->nextInPreOrder(leftRoot);
        right = right->nextInPreOrder(rightRoot);
        if (!left || !right)
            return left == right || differ(u"number of items"_s);
        if (TVLProjectNode::childLevel(left) != TVLProjectNode::childLevel(right))
            return differ(u"level"_s);
        if (static_cast<const TVLProjectNodeProperties &>(*left)
            != static_cast<const TVLProjectNodeProperties &>(*right))
            return differ(u"properties"_s);
    }
}
