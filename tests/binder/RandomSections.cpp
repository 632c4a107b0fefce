#include "RandomSections.h"

#include "RandomTree.h"
#include "TVLProjectFolderFormat.h"
#include "TestBinderProject.h"

#include <QPrinter>

using namespace Qt::StringLiterals;

namespace {

class Filler
{
public:
    Filler(TestBinderProject *project, QRandomGenerator *random)
        : mProject(project)
        , mRandom(random)
        , mIds(project->mIdMap.keys())
    {
    }

    void fill()
    {
        fillRoot();
        fillLabelsAndStatusItems();
        fillCollections();
        fillKeywords();
        fillCustomMetaData();
        fillProperties();
        fillTargets();
        fillLists();
        fillBackdrop();
        fillPrinter();
        mProject->mBackupIncluded = chance(2);
    }

private:
    bool chance(int oneIn) { return mRandom->bounded(oneIn) == 0; }
    QString text(int longest = 20) { return randomText(mRandom, longest); }
    QColor color() { return QColor(QRgb(mRandom->generate()) | 0xff000000); }
    int number() { return int(mRandom->generate()); }

    QList<int> someIds()
    {
        QList<int> ids;
        for (const int id : std::as_const(mIds)) {
            if (chance(4))
                ids.insert(mRandom->bounded(int(ids.size()) + 1), id);
        }
        return ids;
    }

    void fillRoot()
    {
        mProject->mInfo.mModified =
            QDateTime::fromSecsSinceEpoch(mRandom->bounded(1'000'000'000, 2'000'000'000));
        mProject->mInfo.mDevice = text();
        quint32 parts[4];
        mRandom->fillRange(parts);
        const QUuid uuid(parts[0] | 1, ushort(parts[1]), ushort(parts[2]), uchar(parts[3]), 1, 2, 3,
                         4, 5, 6, 7);
        (mProject->mIsMobile ? mProject->mInfo.mSyncId : mProject->mInfo.mModId) = uuid;
        if (!mProject->mUuidMap.isEmpty() && chance(2))
            mProject->adoptTemplateFolder(mProject->mUuidMap.firstKey());
    }

    void fillLabelsAndStatusItems()
    {
        mProject->mLabelTitle = text();
        mProject->mStatusTitle = text();
        for (int id = mRandom->bounded(-1, 30); id >= 0; --id) {
            mProject->mLabels.append({id, text(), color()});
            mProject->mStatusItems.append({id, text()});
        }
        mProject->mDefaultLabelId = number();
        mProject->mDefaultStatusId = number();
    }

    void fillCollections()
    {
        for (int i = mRandom->bounded(4); i > 0; --i) {
            TVLCollectionMetaData collection;
            collection.mId = text();
            collection.mTitle = text();
            collection.mColor = color();
            if (chance(2)) {
                collection.mType = TVL::ArbitraryCollection;
                collection.mIds = someIds();
            } else {
                collection.mType = TVL::SavedSearchCollection;
                collection.mSearchText = text();
                collection.mSearchOperator = TVL::SearchOperator(mRandom->bounded(5));
                collection.mSearchProperty = TVL::DocumentProperty(mRandom->bounded(9));
                collection.mSearchScope = mRandom->bounded(3);
                collection.mSearchCompile = TVL::SearchCompile(mRandom->bounded(3));
                collection.mCaseSensitivity = Qt::CaseSensitivity(mRandom->bounded(2));
            }
            mProject->mCollections.append(collection);
        }
    }

    void fillKeywords()
    {
        const int count = mRandom->bounded(30);
        for (int id = 0; id < count; ++id)
            mProject->mKeywords.append({id, id % 3 == 0 ? -1 : id - 1, text(), color()});
    }

    void fillCustomMetaData()
    {
        for (int i = mRandom->bounded(5); i > 0; --i) {
            TVLMetaDataField field;
            field.mId = text();
            field.mTitle = text();
            field.mWraps = chance(2);
            field.mColor = chance(2) ? color() : QColor();
            mProject->mCustomMetaDataSettings.append(field);
        }
    }

    void fillProperties()
    {
        for (const QString &tag :
             {TVLProjectFolderFormat::ProjectTitleTag, TVLProjectFolderFormat::AbbreviatedTitleTag,
              TVLProjectFolderFormat::FullNameTag, TVLProjectFolderFormat::LastNameTag,
              TVLProjectFolderFormat::FirstNameTag}) {
            const QString value = text();
            if (!value.isEmpty() && chance(2))
                mProject->mProperties.insert(tag, value);
        }
    }

    void fillTargets()
    {
        TVLDraftTarget &draft = mProject->mDraftTarget;
        draft.mCount = number();
        draft.mType = mRandom->bounded(3);
        draft.mCountIncludedOnly = chance(2);
        draft.mCurrentCompileGroupOnly = chance(2);
        draft.mIgnoreDeadline = chance(2);
        draft.mShowOverrun = chance(2);
        draft.mBuffer = std::max(0, number());
        draft.mDeadline = text();
        TVLSessionTarget &session = mProject->mSessionTarget;
        session.mCount = number();
        session.mType = mRandom->bounded(3);
        session.mCountDraftOnly = chance(2);
        session.mAllowNegatives = chance(2);
        session.mResetType = TVLSessionTarget::ResetType(mRandom->bounded(4));
        session.mFromDeadline = chance(2);
        session.mCanWriteOnDeadlineDate = chance(2);
        session.mWritingDays = text();
        mProject->mNotifyTargets = chance(2);
    }

    void fillLists()
    {
        const QList<int> favorites = someIds();
        for (const int id : favorites) {
            if (!mProject->addFavorite(id))
                qFatal("no item has the id %d", id);
        }
        for (int i = mRandom->bounded(10); i > 0; --i)
            mProject->mAutoCompleteList.append({mRandom->bounded(-2, 9), text()});
        for (int i = mRandom->bounded(5); i > 0; --i) {
            TVLReference reference;
            reference.mTitle = text();
            if (chance(2))
                reference.setInternalLink(mRandom->bounded(1000));
            else
                reference.setUrl(
                    QUrl(u"https://example.org/\u00e4 b/?q=%1"_s.arg(mRandom->bounded(9))));
            mProject->mProjectReferences.append(reference);
        }
    }

    void fillBackdrop()
    {
        const QString path = text();
        if (chance(2))
            mProject->mFullScreenBackdrop = mRandom->bounded(1000);
        else if (!path.isEmpty())
            mProject->mFullScreenBackdrop = path;
    }

    void fillPrinter()
    {
        QPrinter *printer = mProject->printer();
        // From the smallest of them, a side of which is 31 mm, to the largest.
        static constexpr QPageSize::PageSizeId Papers[] = {
            QPageSize::B10,   QPageSize::A9,     QPageSize::A4,
            QPageSize::A1,    QPageSize::B0,     QPageSize::Ledger,
            QPageSize::Folio, QPageSize::Letter, QPageSize::Tabloid,
        };
        const auto margin = [this] { return mRandom->bounded(1 << 20) / double(1 << 15); };
        printer->setPageSize(QPageSize(Papers[mRandom->bounded(int(std::size(Papers)))]));
        printer->setPageOrientation(QPageLayout::Orientation(mRandom->bounded(2)));
        printer->setPageMargins({margin(), margin(), margin(), margin()}, QPageLayout::Point);
        printer->setCollateCopies(chance(2));
        printer->setPageOrder(QPrinter::PageOrder(mRandom->bounded(2)));
    }

    TestBinderProject *mProject;
    QRandomGenerator *mRandom;
    const QList<int> mIds;
};

/** Margins are kept to six digits. */
bool equalPageSetup(const QPrinter &left, const QPrinter &right)
{
    const QMarginsF difference = left.pageLayout().margins(QPageLayout::Point)
        - right.pageLayout().margins(QPageLayout::Point);
    const auto isSmall = [](qreal length) { return qAbs(length) < 1e-3; };
    return left.pageLayout().pageSize() == right.pageLayout().pageSize()
        && left.pageLayout().orientation() == right.pageLayout().orientation()
        && isSmall(difference.left()) && isSmall(difference.right()) && isSmall(difference.top())
        && isSmall(difference.bottom()) && left.collateCopies() == right.collateCopies()
        && left.pageOrder() == right.pageOrder();
}

} // namespace

void fillRandomSections(TestBinderProject *project, QRandomGenerator *random)
{
    Filler(project, random).fill();
}

QString differingSection(const TestBinderProject &left, const TestBinderProject &right)
{
    const QPair<const char *, bool> sections[] = {
        {"LabelSettings",
         left.mLabelTitle == right.mLabelTitle && left.mDefaultLabelId == right.mDefaultLabelId
             && left.mLabels == right.mLabels},
        {"StatusSettings",
         left.mStatusTitle == right.mStatusTitle && left.mDefaultStatusId == right.mDefaultStatusId
             && left.mStatusItems == right.mStatusItems},
        {"TemplateFolderUUID", left.mTemplateFolderUuid == right.mTemplateFolderUuid},
        {"Collections", left.mCollections == right.mCollections},
        {"Keywords", left.mKeywords == right.mKeywords},
        {"CustomMetaDataSettings", left.mCustomMetaDataSettings == right.mCustomMetaDataSettings},
        {"ProjectProperties", left.mProperties == right.mProperties},
        {"ProjectTargets",
         left.mDraftTarget == right.mDraftTarget && left.mSessionTarget == right.mSessionTarget
             && left.mNotifyTargets == right.mNotifyTargets},
        {"Favorites", left.mFavorites == right.mFavorites},
        {"AutoCompleteList", left.mAutoCompleteList == right.mAutoCompleteList},
        {"BackupSettings", left.mBackupIncluded == right.mBackupIncluded},
        {"FullScreenBackdrop", left.mFullScreenBackdrop == right.mFullScreenBackdrop},
        {"ProjectReferences", left.mProjectReferences == right.mProjectReferences},
        {"PrintSettings", equalPageSetup(*left.printer(), *right.printer())},
    };
    for (const auto &[section, isEqual] : sections) {
        if (!isEqual)
            return QString::fromLatin1(section);
    }
    return {};
}
