#pragma once

#include <QList>
#include <QSet>

#include <algorithm>

/** The first record of a list with a value in a member; a default one when there is none. */
template <typename Record, typename Value>
Record tvlFindRecord(const QList<Record> &records, Value Record::*member, const Value &value)
{
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const Record &record) { return record.*member == value; });
    return found == records.end() ? Record() : *found;
}

/** The lowest id from 0 up that no record of a list has. */
template <typename Record>
int tvlLowestFreeId(const QList<Record> &records)
{
    QSet<int> used;
    used.reserve(records.size());
    for (const Record &record : records)
        used.insert(record.mId);
    int id = 0;
    while (used.contains(id))
        ++id;
    return id;
}
