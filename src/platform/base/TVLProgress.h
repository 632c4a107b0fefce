#pragma once

#include "TvlExport.h"

#include <QString>

#include <functional>
#include <memory>

/**
 * Told by long work how far it is, and asked whether to go on:
 *
 *     progress->begin(tr("Writing"), int(items.size()));
 *     for (const int id : ids) {
 *         progress->advance();
 *         if (progress->isCanceled())
 *             break;
 *         ...
 *     }
 *     progress->finish();
 *
 * What is seen of it is up to the derived class; this one shows nothing and cancels nothing.
 * TVLDialogProgress shows a dialog. begin() and advance() may run the event loop, so behind them
 * nothing raw from before is of use. Main thread only.
 */
class TVL_EXPORT TVLProgress
{
public:
    TVLProgress() = default;
    virtual ~TVLProgress();
    Q_DISABLE_COPY_MOVE(TVLProgress)

    /** The work begins, of which @p text tells the user; it has @p total steps. */
    virtual void begin(const QString &text, int total);
    /** So many steps more are done. */
    virtual void advance(int steps = 1);
    /** Whether the user wants the work to end. */
    [[nodiscard]] virtual bool isCanceled() const;
    /** The work is over, whether or not all steps were done. */
    virtual void finish();

    using Maker = std::function<std::unique_ptr<TVLProgress>()>;
    /**
     * For programs without windows: what is made from now on for work that would show a dialog, as
     * it does where a function has an argument `showProgress`. An empty one brings dialogs back.
     */
    static void setMaker(Maker maker);
    /** A progress by the maker; null without a maker. */
    [[nodiscard]] static std::unique_ptr<TVLProgress> madeByMaker();
};
