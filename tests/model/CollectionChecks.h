#pragma once

#include "ModelChecks.h"

#include <QCoreApplication>
#include <QTranslator>

using Collections = QList<TVLCollectionMetaData>;
using Ids = QList<int>;
using Lines = QStringList;

/** A collection whose identity is made of its title. */
[[nodiscard]] TVLCollectionMetaData collection(TVL::CollectionType type, const QString &title,
                                               const Ids &ids = {});

/** A record in which no field has its default, titled Full. */
[[nodiscard]] TVLCollectionMetaData
fullRecord(TVL::CollectionType type = TVL::SavedSearchCollection);

/** The collections Binder, Found, Mine, Search and Yours; Mine has the items 3 and 1. */
[[nodiscard]] Collections fiveCollections();
extern const Collections Five;

/** A blank project with those, which counts as saved. */
[[nodiscard]] TestModel modelOfFive();

/** The titles of the collections in their order. */
[[nodiscard]] QString titles(const TVLProjectModel *model);

/** The next colour that tvlRandom() gives, red first. */
[[nodiscard]] QColor nextColor();

/**
 * Writes down what is told of collections, in order, each with how many collections there were at
 * that moment.
 */
class CollectionLog
{
public:
    explicit CollectionLog(const TVLProjectModel *model);

    [[nodiscard]] Lines lines() const { return mLines; }
    /** The records that came with signals. */
    [[nodiscard]] Collections records() const { return mRecords; }

private:
    QObject mContext;
    Lines mLines;
    Collections mRecords;
};

/** Gives every text back as its context, the text and its disambiguation. */
class EchoTranslator : public QTranslator
{
public:
    EchoTranslator() { QCoreApplication::installTranslator(this); }
    ~EchoTranslator() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *disambiguation,
                      int) const override;
};
