#include "platform/macos/MacDocumentationWindow.h"

#include "platform/macos/DocumentationRules.h"

#import <AppKit/AppKit.h>
#import <WebKit/WebKit.h>

#include <utility>

/// Carries out the keys that a program of Qt's has no menu of AppKit's for.
@interface QVPageWindow : NSWindow
@property(nonatomic, strong) WKWebView* page;
- (BOOL)carryOut:(quorvane::PageCommand)command;
@end

@implementation QVPageWindow
- (BOOL)performKeyEquivalent:(NSEvent*)event {
    const NSEventModifierFlags modifiers = event.modifierFlags & NSEventModifierFlagDeviceIndependentFlagsMask;
    const bool isCommand =
        (modifiers & ~NSEventModifierFlags(NSEventModifierFlagShift | NSEventModifierFlagNumericPad)) ==
        NSEventModifierFlagCommand;
    const QString characters = QString::fromNSString(event.charactersIgnoringModifiers);
    if (isCommand && [self carryOut:quorvane::pageCommandOf(characters)]) {
        return YES;
    }
    return [super performKeyEquivalent:event];
}
- (BOOL)carryOut:(quorvane::PageCommand)command {
    switch (command) {
    case quorvane::PageCommand::None:
        return NO;
    case quorvane::PageCommand::Close:
        [self performClose:nil];
        return YES;
    case quorvane::PageCommand::Copy:
        return [NSApp sendAction:@selector(copy:) to:nil from:self];
    case quorvane::PageCommand::SelectAll:
        return [NSApp sendAction:@selector(selectAll:) to:nil from:self];
    case quorvane::PageCommand::Enlarge:
    case quorvane::PageCommand::Reduce:
    case quorvane::PageCommand::OriginalSize:
        self.page.pageZoom = quorvane::pageZoomAfter(command, self.page.pageZoom);
        return YES;
    }
    return NO;
}
@end

/// Keeps the page where it is, and says when the window closes.
@interface QVPageKeeper : NSObject <NSWindowDelegate, WKNavigationDelegate>
@property(nonatomic) std::function<void()> closed;
@end

@implementation QVPageKeeper
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(WKNavigationActionPolicy))decisionHandler {
    const QString address = QString::fromNSString(navigationAction.request.URL.absoluteString);
    decisionHandler(quorvane::staysInPage(address) ? WKNavigationActionPolicyAllow : WKNavigationActionPolicyCancel);
}
- (void)windowWillClose:(NSNotification*)notification {
    self.closed();
}
@end

namespace quorvane {

namespace {

constexpr NSRect kContent = {{0, 0}, {700, 550}}; // in points

WKWebView* makeView(id<WKNavigationDelegate> keeper) {
    WKWebViewConfiguration* configuration = [[WKWebViewConfiguration alloc] init];
    configuration.websiteDataStore = [WKWebsiteDataStore nonPersistentDataStore];
    configuration.defaultWebpagePreferences.allowsContentJavaScript = NO;
    WKWebView* view = [[WKWebView alloc] initWithFrame:kContent configuration:configuration];
    view.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    view.navigationDelegate = keeper;
    return view;
}

QVPageWindow* makeWindow(NSString* title, WKWebView* view) {
    const NSWindowStyleMask style = NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskResizable;
    QVPageWindow* window = [[QVPageWindow alloc] initWithContentRect:kContent
                                                           styleMask:style
                                                             backing:NSBackingStoreBuffered
                                                               defer:NO];
    window.title = title;
    window.titlebarAppearsTransparent = YES;
    window.releasedWhenClosed = NO; // ARC releases it
    window.contentView = view;
    window.page = view;
    [window center];
    return window;
}

} // namespace

struct MacDocumentationWindow::Window {
    Window(NSString* title, NSString* html, std::function<void()> closed) {
        keeper.closed = std::move(closed);
        WKWebView* view = makeView(keeper);
        window = makeWindow(title, view);
        window.delegate = keeper;
        [view loadHTMLString:html baseURL:nil];
    }
    ~Window() {
        window.delegate = nil;
        [window close];
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    QVPageKeeper* keeper = [[QVPageKeeper alloc] init]; ///< windows and views don't keep their delegates
    QVPageWindow* window = nil;
};

MacDocumentationWindow::MacDocumentationWindow(const QString& title, std::function<QString()> page)
    : m_title(title)
    , m_page(std::move(page)) {}

MacDocumentationWindow::~MacDocumentationWindow() = default;

void MacDocumentationWindow::bringForward() {
    if (m_window == nullptr) {
        m_window = std::make_unique<Window>(m_title.toNSString(), m_page().toNSString(), [this] { dropWhenClosed(); });
    }
    [m_window->window makeKeyAndOrderFront:nil];
}

void MacDocumentationWindow::takeAway() {
    m_window.reset();
}

/// In a turn of its own: AppKit is in the midst of closing it.
void MacDocumentationWindow::dropWhenClosed() {
    m_path.send([this] { takeAway(); });
}

} // namespace quorvane
