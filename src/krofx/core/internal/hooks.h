// Functions of the object model that the layers below it call.
//
// A few operations of core and build need data objects, parsers or the object factory, which are in
// higher layers. Each such operation is a function pointer of the table below, and
// krofx/model/hooks.cpp defines the table. The table is constant-initialised data that the lower
// layers refer to by name, so no link can leave it out, and nothing depends on the order of static
// initialisation. A program that links only the layers below the model defines a table of its own.

#ifndef KROFX_CORE_INTERNAL_HOOKS_H_
#define KROFX_CORE_INTERNAL_HOOKS_H_

#include "krofx/core/status.h"
#include "krofx/core/types.h"

class KRBuilder;
class KRDataObj;
class KRParseException;
class KRParser;
class KRString;

namespace krofx::internal {

/// The functions. None of them may log a warning.
struct Hooks {
  /// @name Elements of arrays and records of logs
  /// Each makes one object.
  /// @return the object; null when memory is exhausted.
  /// @{
  u16* (*newUShort)();
  KRString* (*newString)();
  KRParseException* (*newParseException)();
  /// @}

  /// Gets the object that a parser is filling, which becomes the object of a warning that was
  /// logged without one. Null in a program without parsers.
  KRDataObj* (*currentObjectOf)(KRParser& parser);

  /// Writes the root of a tree, without its own tags.
  /// @return as KRBuilder::Build.
  KRBuildStatus (*buildRoot)(KRDataObj& root, KRBuilder& builder);
  /// Finds the first object of a tree that lacks a required tag.
  /// @return the object; null when none lacks one.
  KRDataObj* (*findIncomplete)(KRDataObj& root);
};

/// The table in use. Tests replace its entries before other threads run.
extern Hooks hooks;

}  // namespace krofx::internal

#endif  // KROFX_CORE_INTERNAL_HOOKS_H_
