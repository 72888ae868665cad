#pragma once

#include <QString>

namespace quorvane {

/// True for where the page of the documentation may go: to itself, and to places within itself. It has no address of its own,
/// for which a web view says "about:blank".
/// @param address  in full
bool staysInPage(const QString& address);

/// What a key does in the documentation's window, together with the Command key.
enum class PageCommand { None, Close, Copy, SelectAll, Enlarge, Reduce, OriginalSize };

/// @param characters  what the key types without modifiers but for Shift
PageCommand pageCommandOf(const QString& characters);

/// How large the page is drawn after a command; 1 is its own size.
double pageZoomAfter(PageCommand command, double zoom);

} // namespace quorvane
