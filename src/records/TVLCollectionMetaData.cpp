#include "TVLCollectionMetaData.h"

#include "TVLCoreUtil.h"
#include "TVLDoors.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

const QColor TVLCollectionMetaData::mBinderColor = QColor(230, 234, 238);
QColor TVLCollectionMetaData::mRecentSearchCollColor = QColor(u"lavender"_s);

void TVLCollectionMetaData::setRecentSearchCollectionColor(const QColor &color)
{
    mRecentSearchCollColor = color;
}

QString TVLCollectionMetaData::generateIdentity()
{
    return TVLCoreUtil::CreateUUID();
}

QColor TVLCollectionMetaData::randomColor()
{
    const int red = int(tvlRandom(255));
    const int green = int(tvlRandom(255));
    const int blue = int(tvlRandom(255));
    return QColor(red, green, blue, 255);
}

QColor TVLCollectionMetaData::color() const
{
    switch (mType) {
    case TVL::BinderCollection:
        return mBinderColor;
    case TVL::RecentSearchCollection:
        return mRecentSearchCollColor;
    default:
        return mColor;
    }
}

bool TVLCollectionMetaData::isSyncResultsCollectionTitle(const QString &title)
{
    return title == QCoreApplication::translate("TVLCollectionMetaData", "Updated Documents")
        || title == QCoreApplication::translate("TVLCollectionMetaData", "Synced Documents");
}

bool TVLCollectionMetaData::isSyncResultsCollection() const
{
    return isSyncResultsCollectionTitle(mTitle);
}

bool TVLCollectionMetaData::isSuitableExternalFolderSync() const
{
    return mType != TVL::BinderCollection && mType != TVL::RecentSearchCollection
        && !isSyncResultsCollection();
}
