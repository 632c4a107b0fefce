#pragma once

#include "ModelTester.h"
#include "TVLProjectModel.h"

#include <QStringList>

#include <memory>

class SignalRecorder;

/**
 * A project model that a test owns, held to the rules of item models as long as it lives: see
 * ModelTester. Everything that it signals is written down.
 *
 * It's used like a `std::unique_ptr`, and is null when there is no model, as for a project that
 * can't be opened.
 */
class TestModel
{
public:
    TestModel();
    /** Takes @p model over. */
    explicit TestModel(TVLProjectModel *model);
    TestModel(TestModel &&other) noexcept;
    TestModel &operator=(TestModel &&other) noexcept;
    ~TestModel();

    [[nodiscard]] TVLProjectModel *get() const { return mModel.get(); }
    TVLProjectModel *operator->() const { return mModel.get(); }
    TVLProjectModel &operator*() const { return *mModel; }
    explicit operator bool() const { return mModel != nullptr; }
    bool operator==(std::nullptr_t) const { return mModel == nullptr; }

    /** Deletes the model and takes another one over. */
    void reset(TVLProjectModel *model = nullptr);

    /** Hands the model over, which nobody looks at from then on. For models of thousands of items,
     * as the tester looks at all of them after each change. */
    [[nodiscard]] std::unique_ptr<TVLProjectModel> release();

    /**
     * What the model has signalled since it was made or since the last call, in order, each as
     * `name(argument, argument)`: an index as the id of its item, a record as its title, a list in
     * brackets. With names, only those signals; the others are forgotten too.
     */
    [[nodiscard]] QStringList takeSignals(const QStringList &names = {}) const;

private:
    // The model goes last.
    std::unique_ptr<TVLProjectModel> mModel;
    std::unique_ptr<ModelTester> mTester;
    std::unique_ptr<SignalRecorder> mRecorder;
};
