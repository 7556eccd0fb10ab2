#pragma once

#include <QtGlobal>

/// What is read of a file that a stranger may have written. Beyond these limits a file or a template is given up with a
/// trace: Qt's parsers recurse on the stack of the host's GUI thread and expand entities without bound.
namespace limits {

/// Deepest nesting of elements in a file that is given to a parser. The place of an include may lie as deep, counted
/// over all files that are open. Qt goes two calls deeper for each; 3,100 overflow a stack of 1 MB.
constexpr int kMaxFileDepth = 500;
/// Deepest nesting of parentheses in a content model, which Qt reads by recursion, too; 8,000 overflow 1 MB.
constexpr int kMaxContentModelDepth = 500;
/// How many characters references to entities may put in, each counted as if it were to the longest entity.
constexpr qint64 kMaxEntityGrowth = qint64 { 16 } * 1024 * 1024;
/// Most entities of a file, and most characters of their texts in which Qt may search for the name of each other one;
/// 50,000 entities would take a minute.
constexpr int kMaxEntities = 1000;
constexpr qint64 kMaxEntitySearch = 300'000'000;
/// At the end of each element Qt compares each namespace prefix in scope with all of them. Up to the first number that
/// takes no longer than the rest of the element's parsing; beyond it the comparisons may come to about a second. One of
/// long prefixes counts once more for each further kPrefixCharacters.
constexpr int kFreePrefixes = 16;
constexpr qint64 kMaxPrefixComparisons = 200'000'000;
constexpr int kPrefixCharacters = 32;
/// Deepest nesting of a template while its schema is read.
constexpr int kMaxTemplateDepth = 500;
/// Most attributes of one element of a template: Qt finds an attribute by its index only by counting up to it.
constexpr int kMaxElementAttributes = 2000;
/// Most elements and most attributes of all declarations of a schema and its includes together.
constexpr int kMaxRunElements = 500000;
constexpr int kMaxRunAttributes = 1000000;
/// Most includes open within each other.
constexpr int kMaxOpenIncludes = 64;
/// Most includes in a run.
constexpr int kMaxIncludes = 1000;

} // namespace limits
