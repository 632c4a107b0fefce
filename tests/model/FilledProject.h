#pragma once

#include "ModelChecks.h"
#include "TestProject.h"

/** The items 0 to 6, of which 3, 4 and 6 lie in the Draft and 5 in 4. */
[[nodiscard]] QByteArray someItems();

/** Opens a project whose binder has someItems() and sections behind them; null when it can't be. */
[[nodiscard]] TestModel openedWith(const TestProject &project, const QByteArray &sections);
[[nodiscard]] TestModel openedWith(const QByteArray &sections);

/** The section of favorites with the given ids. */
[[nodiscard]] QByteArray favoritesXml(const QList<QByteArray> &ids);

/** A binder without one of its sections, which it must have. */
[[nodiscard]] QByteArray withoutSection(QByteArray binder, const QByteArray &tag);

/** Gives a project with the items 3 to 6 something of everything that a binder can say. */
void fillProject(TVLProjectModel *model);

/** A project on disk with the items 0 to 6, filled and saved. */
[[nodiscard]] TestModel filledProject(const TestProject &project);

/** What fillProject() gives to a project as its raw text. */
[[nodiscard]] QString oddUserData();

[[nodiscard]] TVLReference toItem(int id, const QString &title);

/** The names of all that a binder says of a project as a whole, for comparing with differences().
 */
[[nodiscard]] QStringList valueNames(bool withThoseOfMobileBinders = true);

/** The names of the values of that kind that two projects don't share. */
[[nodiscard]] QStringList differences(const TVLProjectModel *left, const TVLProjectModel *right);

/** Whether two projects have the same items, with all that is saved of them. */
[[nodiscard]] bool haveSameItems(const TVLProjectModel *left, const TVLProjectModel *right);

/** The page set-up of a project in words. */
[[nodiscard]] QString pageOf(const TVLProjectModel *model);

/** How many timers of an object run. */
[[nodiscard]] int timersOf(QObject *object);
