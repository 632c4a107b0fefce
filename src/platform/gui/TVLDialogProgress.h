#pragma once

#include "TVLProgress.h"

#include <QPointer>
#include <QString>
#include <QWidget>

class QProgressDialog;

/** Shows the progress of long work in a dialog. */
class TVL_EXPORT TVLDialogProgress : public TVLProgress
{
public:
    /** What a dialog is like. */
    struct Look
    {
        QString title = {};
        QString cancelText =
            {}; ///< What stands on the button that ends the work; empty for no button.
        Qt::WindowModality modality = Qt::WindowModal;
        Qt::WindowFlags flags = {};
        bool isShownAtOnce = false; ///< Else when the work turns out to be long.
    };

    /** Makes a dialog when the work begins, which goes with the work or with this object. */
    TVLDialogProgress(Look look, QWidget *parent);
    /** Uses a dialog of the caller's, which stays his; null for none. */
    explicit TVLDialogProgress(QProgressDialog *dialog);
    ~TVLDialogProgress() override;

    /**
     * What an argument `showProgress` asks for: nothing, or a dialog; in place of a dialog what
     * TVLProgress::setMaker() has set.
     */
    [[nodiscard]] static std::unique_ptr<TVLProgress> make(bool isShown, const Look &look,
                                                           QWidget *parent);

    void begin(const QString &text, int total) override;
    void advance(int steps = 1) override;
    [[nodiscard]] bool isCanceled() const override;
    void finish() override;

private:
    void makeDialog(const QString &text, int total);

    Look mLook;
    QPointer<QWidget> mParent;
    // The event loop runs while the dialog is shown, and there its owner may go.
    QPointer<QProgressDialog> mDialog;
    bool mIsOwner;
};
