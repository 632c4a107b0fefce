#include "TVLMetaDataField.h"

#include <algorithm>

const QStringList &TVLMetaDataField::reservedIds()
{
    static const QStringList ids = {
        u"title"_qs,           u"label"_qs,       u"status"_qs,          u"createddate"_qs,
        u"modifieddate"_qs,    u"words"_qs,       u"characters"_qs,      u"includeinexport"_qs,
        u"pagebreakbefore"_qs, u"compileasis"_qs, u"targetcount"_qs,     u"targetcounttype"_qs,
        u"progress"_qs,        u"totalwords"_qs,  u"totalcharacters"_qs, u"allkeywords"_qs,
    };
    return ids;
}

bool TVLCustomMetaDataSettings::hasId(const QString &id) const
{
    return std::any_of(begin(), end(),
                       [&id](const TVLMetaDataField &field) { return field.mId == id; });
}

QStringList TVLCustomMetaDataSettings::ids() const
{
    QStringList ids;
    ids.reserve(size());
    for (const TVLMetaDataField &field : *this)
        ids.append(field.mId);
    return ids;
}
