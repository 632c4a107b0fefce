#pragma once

#include "ModelChecks.h"
#include "TestProject.h"

#include <functional>
#include <memory>

/**
 * A project in which every function finds something to change, and another one to take from. Its
 * items are `a(b(c) d) e` behind a blank text in the Draft and `f(g h) p` in Research, where p is a
 * picture and `a` the template folder.
 */
class ChangingProject
{
public:
    /** @p unreadable has folders stand in place of the texts, so that each text that is loaded is
     * told of in a box. */
    explicit ChangingProject(bool unreadable = false);

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    /** Items of the project by their titles. */
    [[nodiscard]] QModelIndex at(const QString &title) const;
    [[nodiscard]] QModelIndexList all(const QString &titles) const;
    [[nodiscard]] TVLProjectNode *node(const QString &title) const;
    /** An item of the other project, which has `x(y z)` with a keyword, label and status of its
     * own. */
    [[nodiscard]] QModelIndex foreign(const QString &title) const;

private:
    TestProject mProject;
    TestModel mModel;
    // Null until something is taken from it.
    mutable std::unique_ptr<TestProject> mOtherProject;
    mutable TestModel mOther;
};

/** A function that changes a model, or that may show a box and by that let others change it. */
struct ChangingFunction
{
    /** What it returned, if that is items. */
    using Run = std::function<QModelIndexList(const ChangingProject &)>;

    const char *name;
    Run run;
    Run prepare = nullptr; ///< Before anybody listens.
};

/** All public functions of a project model, and of its keywords, that change something. */
[[nodiscard]] const QList<ChangingFunction> &changingFunctions();

/** Those of them that insert items. */
[[nodiscard]] const QList<ChangingFunction> &insertingFunctions();

/** Those that need texts, so that a box about one that can't be read may be shown within. */
[[nodiscard]] const QList<ChangingFunction> &readingFunctions();
