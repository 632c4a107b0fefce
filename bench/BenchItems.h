#pragma once

#include <memory>
#include <string>

class TestBinderProject;

/** How the items of a measured project hang together. */
enum class BenchShape {
    Flat, ///< All are siblings.
    Nested, ///< Each has up to ten children.
};

/** A benchmark's name: `what/shape/items`. */
[[nodiscard]] std::string benchName(const std::string &what, BenchShape shape, int items);

/**
 * A project with items as writers have them: titles of a few words, dates, labels, targets, and
 * now and then keywords, references and meta-data. The same arguments give the same project.
 */
[[nodiscard]] std::unique_ptr<TestBinderProject> makeBenchProject(int items, BenchShape shape);
