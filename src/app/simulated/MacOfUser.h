#pragma once

#include <QString>

namespace quorvane {

/// The simulated Mac of the user who starts the program, "Mac" in their data folder. Where there is none yet it is the DJ's
/// laptop, with the examples' profiles saved in it.
///
/// It is made beside its place and renamed, so that it stands there whole or not at all; what a start that was killed has left
/// beside it is removed by the next. One that is there is used as it is, and one that can't be used is never touched.
///
/// @param dataFolder     made where it is missing; one process at a time (SingleInstance)
/// @param macsimProgram  the `macsim` program, which is every command of the Mac
/// @return the Mac's folder. Throws std::runtime_error with a text for the user that names the folder and what can be done.
QString macOfUser(const QString& dataFolder, const QString& macsimProgram);

} // namespace quorvane
