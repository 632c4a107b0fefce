#pragma once

#include "TVLAutoCompleteItem.h"

#include <QTest>

/** The columns `scope`, `id` and `number`, which is what a completion keeps of the two, and rows.
 */
inline void addCompletionScopes()
{
    QTest::addColumn<int>("scope");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("number");
    QTest::newRow("everywhere") << int(TVLAutoCompleteItem::Everywhere) << -1 << -2;
    QTest::newRow("everywhere, with an id") << int(TVLAutoCompleteItem::Everywhere) << 7 << -2;
    QTest::newRow("general text") << int(TVLAutoCompleteItem::GeneralText) << -1 << -1;
    QTest::newRow("general text, with an id") << int(TVLAutoCompleteItem::GeneralText) << 7 << -1;
    QTest::newRow("an element") << int(TVLAutoCompleteItem::ScriptElement) << 7 << 7;
    QTest::newRow("the first element") << int(TVLAutoCompleteItem::ScriptElement) << 0 << 0;
    QTest::newRow("no element") << int(TVLAutoCompleteItem::ScriptElement) << -1 << -2;
    QTest::newRow("far below") << int(TVLAutoCompleteItem::ScriptElement) << -100 << -2;
}
