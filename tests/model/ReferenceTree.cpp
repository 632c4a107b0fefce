#include "ReferenceTree.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Node = ReferenceNode;
using Nodes = ReferenceTree::Nodes;

/** Without those that lie in another one of the list. */
Nodes outermost(const Nodes &nodes)
{
    Nodes found;
    for (Node *node : nodes) {
        const bool isInner = std::any_of(nodes.begin(), nodes.end(), [node](const Node *other) {
            return other != node && node->isInside(other);
        });
        if (!isInner)
            found.append(node);
    }
    return found;
}

void appendParagraphs(QString *joined, const QString &text)
{
    if (text.isEmpty())
        return;
    if (!joined->isEmpty())
        joined->append(u"\n\n"_s);
    joined->append(text);
}

void appendSynopsis(QString *joined, const QString &synopsis)
{
    if (!joined->isEmpty() && !joined->endsWith(u"\n\n"_s))
        joined->append(joined->endsWith(u'\n') ? u"\n"_s : u"\n\n"_s);
    joined->append(synopsis);
}

void appendDescendants(const Node *node, Nodes *found)
{
    for (const std::unique_ptr<Node> &child : node->children) {
        found->append(child.get());
        appendDescendants(child.get(), found);
    }
}

QString copiedText(const QString &source, const QString &target)
{
    return source.isEmpty() ? target : source;
}

} // namespace

int ReferenceNode::row() const
{
    for (int row = 0; parent && row < parent->count(); ++row) {
        if (parent->children[size_t(row)].get() == this)
            return row;
    }
    return -1;
}

const ReferenceNode *ReferenceNode::top() const
{
    const Node *node = this;
    while (node->parent && node->parent->parent)
        node = node->parent;
    return node;
}

int ReferenceNode::depth() const
{
    return parent ? parent->depth() + 1 : 0;
}

bool ReferenceNode::isInside(const ReferenceNode *other) const
{
    return this == other || (parent && parent->isInside(other));
}

Nodes ReferenceNode::descendants() const
{
    Nodes found;
    appendDescendants(this, &found);
    return found;
}

// --- Finding

Node *ReferenceTree::find(const QUuid &uuid) const
{
    const Nodes nodes = all();
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&uuid](const Node *node) { return node->uuid == uuid; });
    return found == nodes.end() ? nullptr : *found;
}

Node *ReferenceTree::systemFolder(TVL::NodeType type) const
{
    for (const std::unique_ptr<Node> &child : mRoot.children) {
        if (child->type == type)
            return child.get();
    }
    return nullptr;
}

Nodes ReferenceTree::sorted(Nodes nodes) const
{
    const Nodes order = all();
    std::stable_sort(nodes.begin(), nodes.end(),
                     [&order](Node *a, Node *b) { return order.indexOf(a) < order.indexOf(b); });
    return nodes;
}

int ReferenceTree::nextId() const
{
    int id = 0;
    const Nodes nodes = all();
    for (const Node *node : nodes)
        id = std::max(id, node->id + 1);
    while (mFiles.value(id) != ReferenceFiles())
        ++id;
    return id;
}

// --- The tree's own work

Nodes ReferenceTree::takeNewNodes()
{
    const Nodes nodes = mNewNodes;
    mNewNodes.clear();
    return nodes;
}

Node *ReferenceTree::create(Node *parent, int row)
{
    auto made = std::make_unique<Node>();
    Node *node = made.get();
    node->id = nextId();
    insert(parent, row, std::move(made));
    mNewNodes.append(node);
    return node;
}

std::unique_ptr<Node> ReferenceTree::take(Node *node)
{
    const auto place = node->parent->children.begin() + node->row();
    std::unique_ptr<Node> taken = std::move(*place);
    node->parent->children.erase(place);
    node->parent = nullptr;
    return taken;
}

void ReferenceTree::insert(Node *parent, int row, std::unique_ptr<Node> node)
{
    node->parent = parent;
    parent->children.insert(parent->children.begin() + row, std::move(node));
}

void ReferenceTree::forget(const Node *node)
{
    mNewNodes.removeIf([node](const Node *made) { return made->isInside(node); });
}

bool ReferenceTree::isInDraft(const Node *node)
{
    return node->type == TVL::DraftFolder || node->top()->type == TVL::DraftFolder;
}

bool ReferenceTree::isInTrash(const Node *node)
{
    return node->type == TVL::TrashFolder || node->top()->type == TVL::TrashFolder;
}

// --- Making

Nodes ReferenceTree::insertNodes(Node *parent, int row, TVL::NodeType type, const QString &title,
                                 int count)
{
    if (row < 0 || row > parent->count())
        row = parent->count();
    Nodes made;
    for (int i = 0; i < std::max(count, 1); ++i) {
        Node *node = create(parent, row + i);
        node->type = type;
        node->title = title.isEmpty() ? u"Untitled"_s : title;
        made.append(node);
    }
    return made;
}

bool ReferenceTree::insertClones(Node *parent, int row, int count, Node *source,
                                 const ReferenceCloneOptions &options)
{
    if (row == -1)
        row = parent->count();
    if (row < 0 || row > parent->count() || count < 1 || isInTrash(parent))
        return false;
    // All at the same row: the last comes to stand first.
    const Nodes descendants = source && options.withChildren ? source->descendants() : Nodes();
    Nodes made;
    bool areMade = true;
    for (int i = 0; i < count; ++i) {
        made.append(create(parent, row));
        areMade = source && cloneAlone(source, made.constLast(), options) && areMade;
    }
    for (Node *node : areMade ? made : Nodes())
        cloneBelow(descendants, source, node, options);
    mIsModified = true;
    return true;
}

bool ReferenceTree::canClone(const Node *source, const Node *target)
{
    if (source == target || target->top()->type == TVL::TrashFolder)
        return false;
    if (!source->isText() && isInDraft(target))
        return false;
    return !source->isSystemFolder() && !target->isSystemFolder();
}

bool ReferenceTree::cloneAlone(const Node *source, Node *target,
                               const ReferenceCloneOptions &options)
{
    if (options.checkRules && !canClone(source, target))
        return false;
    if (!options.withFiles)
        return true;
    target->type = source->isSystemFolder() ? TVL::Folder : source->type;
    target->title = source->title;
    const ReferenceFiles from = mFiles.value(source->id);
    ReferenceFiles &files = mFiles[target->id];
    files.text = copiedText(from.text, files.text);
    files.notes = copiedText(from.notes, files.notes);
    files.synopsis = copiedText(from.synopsis, files.synopsis);
    files.hasImage = files.hasImage || from.hasImage;
    return true;
}

bool ReferenceTree::clone(const Node *source, Node *target, const ReferenceCloneOptions &options)
{
    // A copy that lies below its source isn't copied itself.
    Nodes descendants = options.withChildren ? source->descendants() : Nodes();
    descendants.removeIf([target](const Node *node) { return node->isInside(target); });
    return cloneAlone(source, target, options) && cloneBelow(descendants, source, target, options);
}

bool ReferenceTree::cloneBelow(const Nodes &descendants, const Node *source, Node *target,
                               const ReferenceCloneOptions &options)
{
    QMap<const Node *, Node *> copies = {{source, target}};
    QMap<const Node *, int> copied; // So many children of each.
    for (const Node *descendant : descendants) {
        Node *copy = create(copies.value(descendant->parent), copied[descendant->parent]++);
        copies.insert(descendant, copy);
        // What was copied before stays.
        if (!cloneAlone(descendant, copy, {.checkRules = options.checkRules}))
            return false;
    }
    return true;
}

Nodes ReferenceTree::duplicate(const Nodes &nodes, bool withChildren)
{
    const bool hasSystemFolder = std::any_of(
        nodes.begin(), nodes.end(), [](const Node *node) { return node->isSystemFolder(); });
    if (nodes.isEmpty() || hasSystemFolder)
        return {};
    const Nodes sources = sorted(withChildren ? outermost(nodes) : nodes);
    const Node *anchor = sources.constFirst();
    for (const Node *node : sources) {
        if (node->depth() < anchor->depth()
            || (node->depth() == anchor->depth() && node->row() > anchor->row()))
            anchor = node;
    }
    return duplicate(sources, anchor->row() + 1, anchor->parent, withChildren, true);
}

Nodes ReferenceTree::duplicate(const Nodes &nodes, int row, Node *parent, bool withChildren,
                               bool checkRules)
{
    if (row == -1)
        row = parent->count();
    if (nodes.isEmpty() || row < 0 || row > parent->count() || isInTrash(parent))
        return {};
    Nodes made;
    for (const Node *source : nodes) {
        Node *copy = create(parent, row + int(made.size()));
        clone(source, copy, {.withChildren = withChildren, .checkRules = checkRules});
        copy->title = uniqueTitle(source->title, copy);
        made.append(copy);
    }
    mIsModified = true;
    return made;
}

QString ReferenceTree::uniqueTitle(const QString &title, const Node *node)
{
    const auto isTaken = [node](const QString &wanted) {
        const auto &siblings = node->parent->children;
        return std::any_of(siblings.begin(), siblings.end(), [&](const auto &sibling) {
            return sibling.get() != node && sibling->title == wanted;
        });
    };
    if (!isTaken(title))
        return title;
    static const QRegularExpression numbered(u"^(.*)-([0-9]{1,9})$"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = numbered.match(title);
    const QString stem = match.hasMatch() ? match.captured(1) : title;
    int number = match.captured(2).toInt();
    QString unique;
    do
        unique = u"%1-%2"_s.arg(stem, QString::number(++number));
    while (isTaken(unique));
    return unique;
}

// --- Moving

bool ReferenceTree::isMoveRefused(const Node *node, const Node *target)
{
    if (node->isSystemFolder())
        return target->parent;
    if (!isInDraft(target))
        return false;
    const Nodes below = node->descendants();
    return !node->isText() || std::any_of(below.begin(), below.end(), [](const Node *inner) {
        return !inner->isText();
    });
}

bool ReferenceTree::moveToFolder(Node *target, const Nodes &nodes, int row)
{
    if (nodes.isEmpty())
        return true;
    return moveNodes(target, row, outermost(nodes));
}

bool ReferenceTree::moveNodes(Node *target, int row, const Nodes &nodes)
{
    if (std::any_of(nodes.begin(), nodes.end(),
                    [target](const Node *node) { return isMoveRefused(node, target); }))
        return false;
    if (row < 0 || row > target->count())
        row = target->count();
    for (Node *node : nodes) {
        const int oldRow = node->row();
        const bool isChild = node->parent == target;
        if (isChild && (oldRow == row || oldRow == row - 1)) {
            row = std::min(row + 1, target->count());
            continue;
        }
        if (target->isInside(node)) // Nothing moves into itself.
            continue;
        if (isChild && oldRow < row)
            --row;
        insert(target, row, take(node));
        ++row;
        mIsModified = true;
    }
    return true;
}

bool ReferenceTree::moveToTrash(const Nodes &nodes)
{
    Node *trash = systemFolder(TVL::TrashFolder);
    const bool isInTrashAlready = std::any_of(nodes.begin(), nodes.end(), [](const Node *node) {
        return node->top()->type == TVL::TrashFolder;
    });
    return trash && !isInTrashAlready && moveToFolder(trash, nodes, -1);
}

bool ReferenceTree::moveChildrenBehind(Node *node)
{
    Nodes children;
    for (const std::unique_ptr<Node> &child : node->children)
        children.append(child.get());
    return moveNodes(node->parent, node->row() + 1, children);
}

// --- Removing

void ReferenceTree::emptyTrash()
{
    Node *trash = systemFolder(TVL::TrashFolder);
    if (!trash || trash->children.empty())
        return;
    removeChildren(trash);
    mIsModified = false;
}

void ReferenceTree::remove(Node *node)
{
    forget(node);
    mFiles.remove(node->id);
    take(node);
}

void ReferenceTree::removeChildren(Node *node)
{
    const Nodes below = node->descendants();
    for (const Node *inner : below) {
        mFiles.remove(inner->id);
        mNewNodes.removeAll(inner);
    }
    node->children.clear();
}

// --- Arranging

Node *ReferenceTree::group(const Nodes &nodes)
{
    if (nodes.isEmpty())
        return nullptr;
    const Nodes members = sorted(nodes);
    Node *parent = members.constFirst()->parent;
    const int row = members.constFirst()->row();
    if (!insertClones(parent, row, 1, nullptr, {}))
        return nullptr;
    Node *group = parent->children[size_t(row)].get();
    return moveToFolder(group, members, -1) ? group : nullptr;
}

bool ReferenceTree::ungroup(const Nodes &nodes)
{
    Nodes groups = sorted(nodes);
    groups.removeIf([](const Node *node) { return node->children.empty(); });
    for (Node *node : std::as_const(groups))
        moveChildrenBehind(node);
    return !groups.isEmpty();
}

Node *ReferenceTree::merge(const Nodes &nodes)
{
    if (nodes.size() < 2)
        return nodes.isEmpty() ? nullptr : nodes.constFirst();
    if (!std::all_of(nodes.begin(), nodes.end(), [](const Node *node) { return node->isText(); }))
        return nullptr;
    Node *survivor = nodes.constFirst();
    ReferenceFiles joined;
    for (const Node *node : nodes) {
        const ReferenceFiles files = mFiles.value(node->id);
        appendParagraphs(&joined.text, files.text);
        appendParagraphs(&joined.notes, files.notes);
        appendSynopsis(&joined.synopsis, files.synopsis);
    }
    joined.hasImage = mFiles.value(survivor->id).hasImage;
    mFiles[survivor->id] = joined;
    Nodes others = sorted(nodes);
    others.removeAll(survivor);
    for (Node *node : std::as_const(others)) {
        // An item goes only when its children may stand in its place.
        if (moveChildrenBehind(node))
            remove(node);
    }
    mIsModified = true;
    return survivor;
}
