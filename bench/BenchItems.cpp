#include "BenchItems.h"

#include "TestBinderProject.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

constexpr int FanOut = 10;

class Maker
{
public:
    Maker(int items, BenchShape shape)
        : mItems(items)
        , mShape(shape)
    {
    }

    std::unique_ptr<TestBinderProject> make()
    {
        auto root = std::make_unique<TVLProjectNode>(QPair<int, QUuid>(-1, uuid()), nullptr);
        QList<TVLProjectNode *> nodes = {root.get()};
        nodes.reserve(mItems + 1);
        for (int i = 0; i < mItems; ++i) {
            TVLProjectNode *parent = mShape == BenchShape::Flat ? root.get() : nodes.at(i / FanOut);
            auto *node = new TVLProjectNode({i, uuid()}, parent);
            fill(node);
            nodes.append(node);
        }
        tvlForEachNode(root.get(), [](TVLProjectNode *node) {
            if (!node->mChildren.isEmpty())
                node->mNodeType = TVL::Folder;
        });

        auto project = std::make_unique<TestBinderProject>(std::move(root));
        project->mInfo.mBinderVersion = TVL::BinderVersion2;
        project->mInfo.mVersion = TVL::toString(TVL::BinderVersion2);
        project->mInfo.mDevice = u"desk"_s;
        project->mInfo.mModified = date();
        project->mInfo.mModId = uuid();
        fillSections(project.get());
        return project;
    }

private:
    bool chance(int oneIn) { return mRandom.bounded(oneIn) == 0; }

    QUuid uuid()
    {
        quint32 parts[4];
        mRandom.fillRange(parts);
        return QUuid(parts[0] | 1, ushort(parts[1]), ushort(parts[1] >> 16), uchar(parts[2]),
                     uchar(parts[2] >> 8), uchar(parts[2] >> 16), uchar(parts[2] >> 24),
                     uchar(parts[3]), uchar(parts[3] >> 8), uchar(parts[3] >> 16),
                     uchar(parts[3] >> 24));
    }

    QDateTime date()
    {
        return QDateTime::fromSecsSinceEpoch(mRandom.bounded(1'300'000'000, 1'700'000'000));
    }

    QString words(int fewest, int most)
    {
        static const QString vocabulary[] = {
            u"The"_s, u"letter"_s,  u"arrives"_s, u"at"_s,     u"dawn"_s,    u"Margaret"_s,
            u"and"_s, u"her"_s,     u"brother"_s, u"winter"_s, u"harbour"_s, u"scène"_s,
            u"&"_s,   u"night"_s,   u"train"_s,   u"Köln"_s,   u"an"_s,      u"argument"_s,
            u"in"_s,  u"kitchen"_s, u"epilogue"_s};
        QString text;
        for (int i = mRandom.bounded(fewest, most + 1); i > 0; --i) {
            if (!text.isEmpty())
                text += u' ';
            text += vocabulary[mRandom.bounded(int(std::size(vocabulary)))];
        }
        return text;
    }

    QPair<int, int> selection()
    {
        return {mRandom.bounded(20'000), chance(3) ? mRandom.bounded(200) : 0};
    }

    void fill(TVLProjectNode *node)
    {
        node->mTitle = words(2, 5);
        node->mCreated = date();
        node->mModified = date();
        node->mNodeType = chance(20) ? TVL::Image : TVL::Text;
        node->mLabelId = mRandom.bounded(-1, 8);
        node->mStatusId = mRandom.bounded(-1, 6);
        node->mIncludeInCompile = !chance(4);
        if (chance(2))
            node->mNotesTextSelection = selection();
        if (chance(4)) {
            node->mCustomMetaData.insert(u"pointofview"_s, words(1, 2));
            node->mCustomMetaData.insert(u"place"_s, words(1, 3));
        }
        for (int i = mRandom.bounded(3); i > 0; --i)
            node->mKeywords.append(mRandom.bounded(40));
        if (chance(20)) {
            TVLReference reference;
            reference.mTitle = words(2, 4);
            reference.setUrl(QUrl(u"https://example.org/wiki/%1"_s.arg(mRandom.bounded(1000))));
            node->mReferences.append(reference);
        }
        if (node->mNodeType == TVL::Image) {
            node->mFileExtension = u"png"_s;
            return;
        }
        node->mTextSelection = selection();
        node->mTarget = chance(3) ? 0 : mRandom.bounded(1, 20) * 250;
        node->mTargetNotify = chance(5);
    }

    void fillSections(TestBinderProject *project)
    {
        project->mLabelTitle = u"Label"_s;
        project->mStatusTitle = u"Status"_s;
        for (int i = 0; i < 8; ++i)
            project->mLabels.append({i, words(1, 2), QColor::fromHsv(i * 40, 120, 240)});
        for (int i = 0; i < 6; ++i)
            project->mStatusItems.append({i, words(1, 2)});
        project->mDefaultLabelId = 0;
        project->mDefaultStatusId = 0;
    }

    const int mItems;
    const BenchShape mShape;
    QRandomGenerator mRandom{1};
};

} // namespace

std::string benchName(const std::string &what, BenchShape shape, int items)
{
    return what + (shape == BenchShape::Flat ? "/flat/" : "/nested/") + std::to_string(items);
}

std::unique_ptr<TestBinderProject> makeBenchProject(int items, BenchShape shape)
{
    return Maker(items, shape).make();
}
