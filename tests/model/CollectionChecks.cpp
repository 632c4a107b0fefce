#include "CollectionChecks.h"

#include "TVLDoors.h"

using namespace Qt::StringLiterals;

TVLCollectionMetaData collection(TVL::CollectionType type, const QString &title, const Ids &ids)
{
    TVLCollectionMetaData made;
    made.mId = u"id of "_s + title;
    made.mTitle = title;
    made.mColor = QColor(10, 20, 30);
    made.mType = type;
    made.mIds = ids;
    return made;
}

TVLCollectionMetaData fullRecord(TVL::CollectionType type)
{
    TVLCollectionMetaData record = collection(type, u"Full"_s, {3, 0});
    record.mSearchText = u"a & b"_s;
    record.mSearchOperator = TVL::WholeWordOperator;
    record.mSearchProperty = TVL::NotesProperty;
    record.mSearchScope = TVL::DraftScope | TVL::ExcludeTrashScope;
    record.mSearchCompile = TVL::ExcludedFromCompile;
    record.mCaseSensitivity = Qt::CaseSensitive;
    return record;
}

Collections fiveCollections()
{
    return {collection(TVL::BinderCollection, u"Binder"_s),
            collection(TVL::RecentSearchCollection, u"Found"_s),
            collection(TVL::ArbitraryCollection, u"Mine"_s, {3, 1}),
            collection(TVL::SavedSearchCollection, u"Search"_s),
            collection(TVL::ArbitraryCollection, u"Yours"_s)};
}

const Collections Five = fiveCollections();

TestModel modelOfFive()
{
    auto model = blankModel();
    model->setCollections(fiveCollections());
    return model;
}

QString titles(const TVLProjectModel *model)
{
    Lines all;
    const Collections collections = model->collections();
    for (const TVLCollectionMetaData &each : collections)
        all.append(each.mTitle);
    return all.join(u' ');
}

QColor nextColor()
{
    const int red = int(tvlRandom(255));
    const int green = int(tvlRandom(255));
    const int blue = int(tvlRandom(255));
    return {red, green, blue};
}

CollectionLog::CollectionLog(const TVLProjectModel *model)
{
    using Model = TVLProjectModel;
    using Record = TVLCollectionMetaData;
    const auto on = [this, model](auto signal, auto text) {
        QObject::connect(model, signal, &mContext, [this, model, text](const auto &...args) {
            mLines.append(u"%1 of %2"_s.arg(text(args...)).arg(model->collections().size()));
        });
    };
    const auto withRecord = [this](const char *what) {
        return [this, what](int position, const Record &record) {
            mRecords.append(record);
            return u"%1 %2 %3"_s.arg(QLatin1String(what)).arg(position).arg(record.mTitle);
        };
    };
    on(&Model::collectionAboutToBeInserted, withRecord("to come"));
    on(&Model::collectionInserted, withRecord("came"));
    on(qOverload<int, Record>(&Model::collectionChanged), withRecord("changed"));
    on(&Model::collectionAboutToBeRemoved, [](int at) { return u"to go %1"_s.arg(at); });
    on(&Model::collectionRemoved, [](int at) { return u"gone %1"_s.arg(at); });
    on(qOverload<>(&Model::collectionChanged), [] { return u"changed"_s; });
    on(&Model::modifiedChanged, [](bool is) { return is ? u"modified"_s : u"saved"_s; });
}

QString EchoTranslator::translate(const char *context, const char *text, const char *disambiguation,
                                  int) const
{
    return Lines({QString::fromUtf8(context), QString::fromUtf8(text),
                  QString::fromUtf8(disambiguation)})
        .join(u'|');
}
