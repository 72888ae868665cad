#pragma once

#include <QProcessEnvironment>

namespace quorvane {

/// The first lines of a program on a Mac, before it makes its application object or reads a preference; on the main thread,
/// which has no other beside it yet.
///
/// The process has the environment of cleanEnvironment from then on, and room for 1,024 open files (the system gives 256). A
/// read of a file that isn't on the disk fails on the main thread (EDEADLK) instead of waiting for the network. Arguments of
/// the form "-Key value" aren't preferences any more: they would come before the stored ones.
/// @return the environment, for the children
QProcessEnvironment prepareProcess();

} // namespace quorvane
