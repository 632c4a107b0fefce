#pragma once

#include "TVL.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QUuid>

#include <memory>
#include <vector>

/** An item of a ReferenceTree. */
struct ReferenceNode
{
    TVL::NodeType type = TVL::Text;
    int id = -1;
    QUuid uuid; ///< Null until the test has learned what the model chose.
    QString title;
    ReferenceNode *parent = nullptr;
    std::vector<std::unique_ptr<ReferenceNode>> children;

    [[nodiscard]] int row() const;
    [[nodiscard]] int count() const { return int(children.size()); }
    [[nodiscard]] bool isSystemFolder() const { return type < TVL::Folder; }
    [[nodiscard]] bool isText() const { return type == TVL::Folder || type == TVL::Text; }
    /** The node at top level that this one is or lies in. */
    [[nodiscard]] const ReferenceNode *top() const;
    [[nodiscard]] int depth() const;
    /** Whether this is the other one or lies in it. */
    [[nodiscard]] bool isInside(const ReferenceNode *other) const;
    /** All below, in the order of the binder. */
    [[nodiscard]] QList<ReferenceNode *> descendants() const;
};

/** What lies on disk under one id. */
struct ReferenceFiles
{
    QString text;
    QString notes;
    QString synopsis;
    bool hasImage = false;

    friend bool operator==(const ReferenceFiles &, const ReferenceFiles &) = default;
};

/** What of an item comes along with a copy. */
struct ReferenceCloneOptions
{
    bool withChildren = false;
    bool checkRules = true;
    bool withFiles = true;
};

/**
 * What a project's tree must look like after edits: the rules of each edit in their plainest form,
 * without signals, maps, documents in memory or any regard for speed. A test does the same to this
 * and to a model and compares.
 *
 * Ids are given out as a model of the format with ids does: the largest in use plus 1, or a larger
 * one that has no files. Files belong to ids, not to items: those that a removed item left behind
 * stay.
 */
class ReferenceTree
{
public:
    using Node = ReferenceNode;
    using Nodes = QList<ReferenceNode *>;

    [[nodiscard]] Node *root() { return &mRoot; }
    [[nodiscard]] const Node *root() const { return &mRoot; }
    /** All items in the order of the binder. */
    [[nodiscard]] Nodes all() const { return mRoot.descendants(); }
    /** Null for an unknown one. */
    [[nodiscard]] Node *find(const QUuid &uuid) const;
    /** The first at top level; null for none. */
    [[nodiscard]] Node *systemFolder(TVL::NodeType type) const;
    [[nodiscard]] Nodes sorted(Nodes nodes) const;

    [[nodiscard]] const QMap<int, ReferenceFiles> &files() const { return mFiles; }
    [[nodiscard]] ReferenceFiles &filesOf(const Node *node) { return mFiles[node->id]; }

    [[nodiscard]] bool isModified() const { return mIsModified; }
    void setModified(bool modified = true) { mIsModified = modified; }

    /** The items that were made since the last call and are still there. */
    [[nodiscard]] Nodes takeNewNodes();

    /** A row of -1, or one that isn't there, is the end. */
    Nodes insertNodes(Node *parent, int row, TVL::NodeType type, const QString &title, int count);
    /** For a null @p source without copying. */
    bool insertClones(Node *parent, int row, int count, Node *source,
                      const ReferenceCloneOptions &options);
    Nodes duplicate(const Nodes &nodes, bool withChildren);
    Nodes duplicate(const Nodes &nodes, int row, Node *parent, bool withChildren, bool checkRules);
    [[nodiscard]] static QString uniqueTitle(const QString &title, const Node *node);

    bool moveToFolder(Node *target, const Nodes &nodes, int row);
    bool moveToTrash(const Nodes &nodes);

    /** All below the Trash, with files; the project is saved if there was any. */
    void emptyTrash();
    /** The item with its files, and all below it without. */
    void remove(Node *node);
    /** All below the item, with files. */
    void removeChildren(Node *node);

    /** Null when it is refused. */
    Node *group(const Nodes &nodes);
    bool ungroup(const Nodes &nodes);
    Node *merge(const Nodes &nodes);

private:
    [[nodiscard]] int nextId() const;
    Node *create(Node *parent, int row);
    static std::unique_ptr<Node> take(Node *node);
    static void insert(Node *parent, int row, std::unique_ptr<Node> node);
    void forget(const Node *node);

    [[nodiscard]] static bool isInDraft(const Node *node);
    [[nodiscard]] static bool isInTrash(const Node *node);
    [[nodiscard]] static bool isMoveRefused(const Node *node, const Node *target);
    [[nodiscard]] static bool canClone(const Node *source, const Node *target);

    bool clone(const Node *source, Node *target, const ReferenceCloneOptions &options);
    bool cloneBelow(const Nodes &descendants, const Node *source, Node *target,
                    const ReferenceCloneOptions &options);
    bool cloneAlone(const Node *source, Node *target, const ReferenceCloneOptions &options);
    bool moveNodes(Node *target, int row, const Nodes &nodes);
    bool moveChildrenBehind(Node *node);

    Node mRoot;
    QMap<int, ReferenceFiles> mFiles; ///< By id.
    Nodes mNewNodes;
    bool mIsModified = false;
};
