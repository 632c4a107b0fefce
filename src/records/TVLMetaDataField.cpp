#include "TVLMetaDataField.h"

#include <algorithm>

using namespace Qt::StringLiterals;

const QStringList &TVLMetaDataField::reservedIds()
{
    static const QStringList ids = {
        u"title"_s,           u"label"_s,       u"status"_s,          u"createddate"_s,
        u"modifieddate"_s,    u"words"_s,       u"characters"_s,      u"includeinexport"_s,
        u"pagebreakbefore"_s, u"compileasis"_s, u"targetcount"_s,     u"targetcounttype"_s,
        u"progress"_s,        u"totalwords"_s,  u"totalcharacters"_s, u"allkeywords"_s,
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
