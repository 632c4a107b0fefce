#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>

/**
 * Prepares the process for a fuzz target: no log output, and a time zone with summer time, since
 * one without hides mistakes with dates. To be called by LLVMFuzzerInitialize().
 */
void tvlInitFuzzing();

/**
 * Writes the input to a file, always the same, and returns its path. The file lies in memory if the
 * system has a place for that.
 */
[[nodiscard]] QString tvlInputAsFile(const uint8_t *data, size_t size);

/** Ends the process as a finding, with what was found. */
[[noreturn]] void tvlReportFinding(const char *what);

/** Ends the process as a finding, since two texts differ that ought to be equal; shows the first
 * line in which they do. */
[[noreturn]] void tvlReportDifference(const char *what, const QByteArray &expected,
                                      const QByteArray &actual);
