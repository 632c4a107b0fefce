#include "ItemFinder.h"
#include "ItemTexts.h"

#include "TVLProjectModel.h"
#include "TVLProjectNode.h"

#include <QUuid>

namespace {

/** What is left of a path behind a title and its slash; null when the path leads elsewhere. */
QStringView behindTitle(QStringView path, const QString &title)
{
    if (!path.startsWith(title))
        return {};
    const QStringView rest = path.sliced(title.size());
    return rest.startsWith(u'/') ? rest.sliced(1) : QStringView();
}

/*
 * A path can be read in several ways when titles hold slashes, so each way that has matched so far
 * is followed, one level after the other.
 */
TVLProjectNode *findByPath(TVLProjectNode *root, QStringView path)
{
    struct Way
    {
        TVLProjectNode *node;
        QStringView rest;
    };
    QList<Way> ways{{root, path}};
    while (!ways.isEmpty()) {
        QList<Way> next;
        for (const Way &way : std::as_const(ways)) {
            for (TVLProjectNode *child : std::as_const(way.node->mChildren)) {
                const QString title = shownTitle(child);
                if (way.rest == title)
                    return child;
                const QStringView rest = behindTitle(way.rest, title);
                if (!rest.isEmpty())
                    next.append({child, rest});
            }
        }
        ways = next;
    }
    return nullptr;
}

} // namespace

TVLProjectNode *findItem(const TVLProjectModel &model, const QString &name)
{
    if (name.isEmpty())
        return nullptr;
    bool isNumber = false;
    const int id = name.toInt(&isNumber);
    if (isNumber && model.hasNodeId(id))
        return model.findNode(id);
    if (const QUuid uuid = QUuid::fromString(name); model.hasNodeUuid(uuid))
        return model.findNodeByUuid(uuid);
    return findByPath(model.binderRoot(), name);
}
