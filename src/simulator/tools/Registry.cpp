#include "simulator/tools/Registry.h"

#include "simulator/tools/Cat.h"
#include "simulator/tools/Chown.h"
#include "simulator/tools/Codesign.h"
#include "simulator/tools/Cp.h"
#include "simulator/tools/Defaults.h"
#include "simulator/tools/Ditto.h"
#include "simulator/tools/Dscacheutil.h"
#include "simulator/tools/Echo.h"
#include "simulator/tools/Env.h"
#include "simulator/tools/Killall.h"
#include "simulator/tools/Launchctl.h"
#include "simulator/tools/Ls.h"
#include "simulator/tools/Mdutil.h"
#include "simulator/tools/Mkdir.h"
#include "simulator/tools/Mv.h"
#include "simulator/tools/Networksetup.h"
#include "simulator/tools/Open.h"
#include "simulator/tools/Osascript.h"
#include "simulator/tools/Perl.h"
#include "simulator/tools/Pmset.h"
#include "simulator/tools/Rm.h"
#include "simulator/tools/ScriptEngine.h"
#include "simulator/tools/Sfltool.h"
#include "simulator/tools/Sh.h"
#include "simulator/tools/TestCommand.h"
#include "simulator/tools/Tmutil.h"
#include "simulator/tools/Touch.h"
#include "simulator/tools/True.h"

namespace macsim {

using namespace Qt::StringLiterals;

const ToolTable& simulatorTools() {
    static const ToolTable tools{
        {u"/bin/["_s, runTestCommand},
        {u"/bin/cat"_s, runCat},
        {u"/bin/cp"_s, runCp},
        {u"/bin/echo"_s, runEcho},
        {u"/bin/launchctl"_s, runLaunchctl},
        {u"/bin/ls"_s, runLs},
        {u"/bin/mkdir"_s, runMkdir},
        {u"/bin/mv"_s, runMv},
        {u"/bin/rm"_s, runRm},
        {u"/bin/sh"_s, runSh},
        {u"/bin/test"_s, runTestCommand},
        {u"/usr/bin/codesign"_s, runCodesign},
        {u"/usr/bin/defaults"_s, runDefaults},
        {u"/usr/bin/ditto"_s, runDitto},
        {u"/usr/bin/dscacheutil"_s, runDscacheutil},
        {u"/usr/bin/env"_s, runEnv},
        {u"/usr/bin/false"_s, runFalse},
        {u"/usr/bin/killall"_s, runKillall},
        {u"/usr/bin/mdutil"_s, runMdutil},
        {u"/usr/bin/open"_s, runOpen},
        {u"/usr/bin/osascript"_s, runOsascript},
        {u"/usr/bin/perl"_s, runPerl},
        {u"/usr/bin/pmset"_s, runPmset},
        {u"/usr/bin/sfltool"_s, runSfltool},
        {u"/usr/bin/tmutil"_s, runTmutil},
        {u"/usr/bin/touch"_s, runTouch},
        {u"/usr/bin/true"_s, runTrue},
        {u"/usr/libexec/scriptengine"_s, runScriptEngine},
        {u"/usr/sbin/chown"_s, runChown},
        {u"/usr/sbin/networksetup"_s, runNetworksetup},
    };
    return tools;
}

} // namespace macsim
