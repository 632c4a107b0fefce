#pragma once

#include <QString>
#include <QStringList>

class TVLProjectModel;

/**
 * The parts of a binder file that a save of the project would drop, because this version of the
 * library doesn't know them, or because they can't be kept as they are, such as user data whose
 * markup is torn. Those that hold nothing aren't among them.
 */
[[nodiscard]] QStringList sectionsLostBySaving(const QString &binderPath,
                                               const TVLProjectModel &model);
