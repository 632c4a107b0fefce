#pragma once

#include <QRandomGenerator>

#include <memory>

class TVLProjectNode;

/** What a random tree is made of. */
struct RandomTreeOptions
{
    int nodes = 100;
    int deepest = 12; ///< Levels below the root.
    quint32 seed = 1;
    bool withIds = true; ///< Without, all ids are -1.
};

/**
 * A tree of random nodes in which every property that a binder keeps is set on some node, texts
 * from all planes of Unicode among them. The same options give the same tree. Only what a binder
 * keeps for a node's type is set, and only in forms that it keeps exactly, so that what is read
 * back must be equal.
 */
[[nodiscard]] std::unique_ptr<TVLProjectNode> makeRandomTree(const RandomTreeOptions &options);

/** A random text that XML can hold as it stands; may be empty. */
[[nodiscard]] QString randomText(QRandomGenerator *random, int longest);

/**
 * Whether two trees are equal in shape and in all that a binder keeps. On a difference @p where
 * says which node and what.
 */
[[nodiscard]] bool equalTrees(const TVLProjectNode *left, const TVLProjectNode *right,
                              QString *where);
