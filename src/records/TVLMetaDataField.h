#pragma once

#include "TvlExport.h"

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

/** A field that the writer defined for the items of a project. */
class TVL_EXPORT TVLMetaDataField
{
public:
    QString mId; ///< Key of the field in each item's meta-data.
    QString mTitle;
    bool mWraps = false; ///< Shown over several lines.
    QColor mColor;

    /** Identifiers that a field may not take: outline columns and search use them. */
    [[nodiscard]] static const QStringList &reservedIds();

    friend bool operator==(const TVLMetaDataField &, const TVLMetaDataField &) = default;
};

/** A custom field together with what an item holds in it. */
class TVLCustomMetaDataInfo : public TVLMetaDataField
{
public:
    QString mValue;

    friend bool operator==(const TVLCustomMetaDataInfo &, const TVLCustomMetaDataInfo &) = default;
};

/** The custom meta-data fields of a project, in their order. */
class TVL_EXPORT TVLCustomMetaDataSettings : public QList<TVLMetaDataField>
{
public:
    using QList<TVLMetaDataField>::QList;

    [[nodiscard]] bool hasId(const QString &id) const;
    [[nodiscard]] QStringList ids() const;
};
