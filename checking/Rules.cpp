#include "checking/Rules.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace checking {

namespace {

constexpr RuleText rules[] = {
    {Rule::IdDiffers, "ID-DIFFERS",
     "{1} is given this id, which differs from \"{2}\" in the case of letters or in blanks alone",
     "ids are compared exactly, so these are two products",
     "Write the id in one place, and make the narrow and the wide form from it.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsKitMsgbusSetCollectProperties(L"myav__1000", &collector, nullptr);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);)"},
    {Rule::IdUnusable, "ID-UNUSABLE", "{1} is given an id that is {2}", "no agent can call a product by it",
     "Use the id that the agent's administrators know the product by.",
     R"(VsMsgbusEntry("", VsMsgbusServiceProperty, &sink, &bridge);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)"},
    {Rule::MaskEmpty, "MASK-EMPTY", "it enters with the mask {1}, which names no service",
     "the agent will never call it",
     "Give VsMsgbusEntry the VsMsgbusService bits of the interfaces that the product registers.",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);
VsMsgbusEntry("MYAV__1000", 0, &sink, &bridge);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)"},
    {Rule::MaskMissing, "MASK-MISSING", "its {1} is registered, but it entered without {2} (mask {3})",
     "the agent will never ask it", "Add the bit to the mask of VsMsgbusEntry.",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);
VsMsgbusEntry("MYAV__1000", VsMsgbusServiceTask, &sink, &bridge);)",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);
VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)"},
    {Rule::InterfaceMissing, "INTERFACE-MISSING", "it entered with {2}, but has no {1} registered",
     "the agent asks it and gets nothing", "Call {3}, or take the bit out of the mask of VsMsgbusEntry.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);
VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)"},
    {Rule::NeverEntered, "NEVER-ENTERED", "its {1} is registered, but no product of that id has entered",
     "the agent will never ask it",
     "Give VsMsgbusEntry the id that the registration has: one in UTF-8, the other in UTF-16.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsKitMsgbusSetCollectProperties(L"MYAV_1000", &collector, nullptr);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);)"},
    {Rule::SetTwice, "SET-TWICE", "its {1} is registered a second time",
     "the first one stays in force, and this one is never called, although the answer is true",
     "Remove the first one before, or register one alone.",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &first, nullptr);
VsKitMsgbusSetCollectProperties(L"MYAV__1000", &second, nullptr);)",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &first, nullptr);
VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
VsKitMsgbusSetCollectProperties(L"MYAV__1000", &second, nullptr);)"},
    {Rule::SetNull, "SET-NULL", "{1} is given null for the {2}", "nothing is registered",
     "Look at the answer, which is false, and at where the pointer comes from.",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", nullptr, nullptr);)",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);)"},
    {Rule::OnEndedStack, "ON-ENDED-STACK", "its {1} lies on the stack of thread {2}, which has ended",
     "calling it would read memory that is no longer there; it is not called",
     "Keep the object in static or heap memory, and remove it before it goes.",
     R"(std::thread([] {
    Collector collector;
    VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr);
}).join();)",
     R"(static Collector collector;
std::thread([] { VsKitMsgbusSetCollectProperties(L"MYAV__1000", &collector, nullptr); }).join();)"},
    {Rule::InterfaceGone, "INTERFACE-GONE", "its {1}, of {2}, is no longer in memory",
     "calling it would crash; it is not called",
     "Call {3} before the object is freed and before the library with its code is unloaded.",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", collector, nullptr);
FreeLibrary(moduleOfCollector);)",
     R"(VsKitMsgbusSetCollectProperties(L"MYAV__1000", collector, nullptr);
VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
FreeLibrary(moduleOfCollector);)"},
    {Rule::HeadersDiffer, "HEADERS-DIFFER", "slot {2} of its {1} is no function",
     "the module was compiled with other headers, and another function than meant would be called",
     "Compile the module with the headers of this bridge's package.",
     R"(class INYCollectProperties {  // of an older header: GetLogLevel is missing
    virtual void CollectProperties(bool full, ISet* set) = 0;
};)",
     R"(#include "VsMsgbus.h"  // of the package that VsMsgbus.dll comes from)"},
    {Rule::RemoveUnknown, "REMOVE-UNKNOWN", "{1} is called, but no {2} of that id is registered",
     "nothing is removed, although the answer is true",
     "Remove each registration once, with the id that it was made with.",
     R"(VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");)",
     R"(VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");)"},
    {Rule::RemoveInside, "REMOVE-INSIDE", "{1} is called inside {2} of the same interface",
     "it returns at once, with this thread still inside",
     "Do not free the object, nor unload its library, before the callback has returned; better, remove it elsewhere.",
     R"(void Collector::CollectProperties(bool, ISet*) {
    VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
    delete this;
})",
     R"(void Unload() {
    VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
    delete collector;
})"},
    {Rule::RemoveGaveUp, "REMOVE-GAVE-UP", "{1} has given up waiting, with thread {2} still inside {3}",
     "that thread goes on in code and objects that the module now takes for free",
     "Have the callback end: it may wait for a lock that the caller of Remove holds. Free nothing meanwhile.",
     R"(const std::lock_guard guard(lock);  // which CollectProperties wants, too
VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");)",
     R"(VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
const std::lock_guard guard(lock);)"},
    {Rule::LeftRegistered, "LEFT-REGISTERED", "its {1}, of {2}, is still registered when {3}",
     "what calls it late finds nothing", "Remove every registration on the module's way out.",
     R"(VsMsgbusExit("MYAV__1000", bridge);
FreeLibrary(vsmsgbus);)",
     R"(VsMsgbusExit("MYAV__1000", bridge);
VsKitMsgbusRemoveCollectProperties(L"MYAV__1000");
FreeLibrary(vsmsgbus);)"},
    {Rule::EntryNoSink, "ENTRY-NO-SINK", "it enters without a log sink, and no other product gave one",
     "what the bridge and the agent say of failures is lost",
     "Give VsMsgbusEntry a sink that writes to the module's log.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, nullptr, &bridge);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);)"},
    {Rule::EntryFailed, "ENTRY-FAILED", "VsMsgbusEntry answers false{1}", "{2}",
     "Look at the answer of VsMsgbusEntry and at what it wrote to outInstance.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, nullptr);)",
     R"(VsMsgbus* bridge = nullptr;
if (!VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge)) {
    log("no agent services: VsMsgbusEntry failed");
})"},
    {Rule::ExitUnknown, "EXIT-UNKNOWN", "VsMsgbusExit is called, but no product of that id has entered",
     "no product leaves, although the answer is true", "Leave once, with the id that the product entered with.",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsMsgbusExit("myav__1000", bridge);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
VsMsgbusExit("MYAV__1000", bridge);)"},
    {Rule::ExitOtherInstance, "EXIT-OTHER-INSTANCE", "VsMsgbusExit is given another instance than Entry gave",
     "the product stays in, although the answer is true, and the log sink is taken away",
     "Keep what VsMsgbusEntry wrote to outInstance until Exit.", R"(VsMsgbusExit("MYAV__1000", nullptr);)",
     R"(VsMsgbusExit("MYAV__1000", bridge);)"},
    {Rule::ExitWhileCalled, "EXIT-WHILE-CALLED", "VsMsgbusExit has returned, with thread {1} still inside {2}",
     "that thread goes on in the module's code", "Have the callback end before the product leaves.",
     R"(void Collector::CollectProperties(bool, ISet*) { WaitUntilExitHasReturned(); })",
     R"(void Collector::CollectProperties(bool, ISet* set) { set->SetProperty(L"general", L"version", L"1.0"); })"},
    {Rule::ExitMissing, "EXIT-MISSING", "it has not left when {1}",
     "the agent is told nothing, and may call code that is gone", "Call VsMsgbusExit on the module's way out.",
     R"(int main() {
    VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
})",
     R"(int main() {
    VsMsgbusEntry("MYAV__1000", VsMsgbusServiceProperty, &sink, &bridge);
    VsMsgbusExit("MYAV__1000", bridge);
})"},
    {Rule::LoaderLock, "LOADER-LOCK", "{1} is called under the system's loader lock, as in DllMain",
     "threads that it waits for cannot begin or end: it hangs until its limit, or for ever",
     "Call it from functions that the host calls to load and unload the module.",
     R"(BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    return reason != DLL_PROCESS_ATTACH || VsMsgbusEntry("MYAV__1000", mask, &sink, &bridge);
})",
     R"(extern "C" __declspec(dllexport) bool Load() {
    return VsMsgbusEntry("MYAV__1000", mask, &sink, &bridge);
})"},
    {Rule::SinkTaken, "SINK-TAKEN", "its Exit takes the log sink away, which {1} still needs",
     "from now on no line of the bridge or the agent is written",
     "Enter once more with a sink in a product that stays, or leave with all products together.",
     R"(VsMsgbusExit("OTHER1000", bridge);  // MYAV__1000 stays)",
     R"(VsMsgbusExit("OTHER1000", bridge);
VsMsgbusEntry("MYAV__1000", mask, &sink, &bridge);)"},
    {Rule::NotEntered, "NOT-ENTERED", "{1} is called while no product has entered", "it does nothing",
     "Call it between VsMsgbusEntry and the last VsMsgbusExit.",
     R"(UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);
VsMsgbusEntry("MYAV__1000", VsMsgbusServiceTask, &sink, &bridge);)",
     R"(VsMsgbusEntry("MYAV__1000", VsMsgbusServiceTask, &sink, &bridge);
UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);)"},
    {Rule::LentKept, "LENT-KEPT", "{1} is called on the object that {2} was given, after that has returned",
     "the object belongs to the bridge and is gone; the call is answered as a failure",
     "Use it inside the callback alone, and keep the values instead.",
     R"(void Enforcer::EnforcePolicy(const wchar_t*, IPolicyBag* bag) { kept = bag; }
void Later() { kept->EnumeratePolicies(L"MYAV__1000", &callbacks); })",
     R"(void Enforcer::EnforcePolicy(const wchar_t*, IPolicyBag* bag) {
    bag->EnumeratePolicies(L"MYAV__1000", &callbacks);
})"},
    {Rule::LentOtherThread, "LENT-OTHER-THREAD", "{1} is called on another thread than that of {2}",
     "the bridge does not guard the object against that", "Use it on the callback's own thread.",
     R"(void Enforcer::EnforcePolicy(const wchar_t*, IPolicyBag* bag) {
    std::thread([&] { bag->EnumeratePolicies(L"MYAV__1000", &callbacks); }).join();
})",
     R"(void Enforcer::EnforcePolicy(const wchar_t*, IPolicyBag* bag) {
    bag->EnumeratePolicies(L"MYAV__1000", &callbacks);
})"},
    {Rule::TextKept, "TEXT-KEPT", "a text is read that {1} was given, after that has returned",
     "its memory is gone: this is an access violation", "Copy a text inside the callback that gives it.",
     R"(int32_t Tasks::ExecuteTask(const wchar_t* taskId, ITaskBag*) {
    kept = taskId;  // a const wchar_t*
    return NothingDecided;
})",
     R"(int32_t Tasks::ExecuteTask(const wchar_t* taskId, ITaskBag*) {
    kept = taskId;  // a std::wstring
    return NothingDecided;
})"},
    {Rule::OutputTooSmall, "OUTPUT-TOO-SMALL", "{1} writes {2} bytes where {3} have room",
     "the bytes behind are overwritten",
     "Give room for the size and what the agent adds: VsMsgbus/Crypto.h tells how much that is.",
     R"(std::vector<unsigned char> out(text.size());
VsKitMsgbusEncryptData(text.data(), size, out.data(), &outSize, type);)",
     R"(std::vector<unsigned char> out(text.size() + 64);
VsKitMsgbusEncryptData(text.data(), size, out.data(), &outSize, type);)"},
    {Rule::BufferNotEmpty, "BUFFER-NOT-EMPTY",
     "{1} is given an lpc_buffer that is neither empty nor filled by the bridge",
     "the bridge frees what its fields happen to hold; here they are taken for empty",
     "Begin with `lpc_buffer out{};`.",
     R"(auto* out = static_cast<VsKitMsgbus::lpc_buffer*>(malloc(sizeof(VsKitMsgbus::lpc_buffer)));
VsKitMsgbusGetInformation(VsMsgbusInformationVersion, out);)",
     R"(VsKitMsgbus::lpc_buffer out{};
VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out);)"},
    {Rule::BufferReleasedTwice, "BUFFER-RELEASED-TWICE", "an lpc_buffer's text is released that was released before",
     "it would be freed twice; here it is left alone", "Do not copy an lpc_buffer, or release one of the copies alone.",
     R"(VsKitMsgbus::lpc_buffer copy = out;
out.Release();
copy.Release();)",
     R"(out.Release();)"},
    {Rule::BufferForeign, "BUFFER-FOREIGN", "an lpc_buffer is released whose text the bridge did not make",
     "another heap's memory would be freed; here it is left alone", "Release what the bridge filled, and nothing else.",
     R"(out.kind = VsKitMsgbus::lpc_buffer::WideText;
out.data = malloc(100);
out.Release();)",
     R"(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out);
out.Release();)"},
    {Rule::BufferNotReleased, "BUFFER-NOT-RELEASED", "{2} texts that {1} filled are not released at the last Exit",
     "their memory is lost", "Call Release on every lpc_buffer, or take its text with TakeWideText or TakeNarrowText.",
     R"(VsKitMsgbus::lpc_buffer out{};
VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out);)",
     R"(VsKitMsgbus::lpc_buffer out{};
VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out);
out.Release();)"},
    {Rule::NothingDone, "NOTHING-DONE", "{1} is called", "it answers success and touches nothing",
     "Use VsKitMsgbusEncryptData and VsKitMsgbusDecryptData.",
     R"(VsKitMsgbusEncryptAndEncodeData(text, size, out, &outSize);)",
     R"(VsKitMsgbusEncryptData(text, size, out, &outSize, type);)"},
    {Rule::TaskStatus, "TASK-STATUS", "UpdateMsgbusTaskStatus is given {1}",
     "the agent is told that the task has failed",
     "Give NothingDecided (2), Failed (3), Succeeded (4) or AgentDefined (6): a percentage is no status.",
     R"(UpdateMsgbusTaskStatus(taskId, 50);)",
     R"(UpdateMsgbusTaskStatus(taskId, VsKitMsgbus::INYTaskEnforcer::NothingDecided);)"},
    {Rule::TaskAnswer, "TASK-ANSWER", "ExecuteTask answers {1}", "the agent is told that the task goes on",
     "Answer Succeeded (4) or Failed (3) when it is over, NothingDecided (2) when it goes on.",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) { return 0; })",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) { return Succeeded; })"},
    {Rule::TaskStateAnswer, "TASK-STATE-ANSWER", "UpdateTaskStatus answers {1}",
     "the agent is told that the task has failed", "Answer NothingDecided (2), Failed (3) or Succeeded (4).",
     R"(int32_t Tasks::UpdateTaskStatus(const wchar_t*, ITaskBag*) { return AgentDefined; })",
     R"(int32_t Tasks::UpdateTaskStatus(const wchar_t*, ITaskBag*) { return NothingDecided; })"},
    {Rule::TaskWithoutEnd, "TASK-WITHOUT-END",
     "ExecuteTask of task {1} said that it goes on, and nothing was reported until Exit", "the agent waits for its end",
     "Call UpdateMsgbusTaskStatus with Succeeded or Failed when the task is over.",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) { return NothingDecided; })",
     R"(int32_t Tasks::ExecuteTask(const wchar_t* taskId, ITaskBag*) {
    StartWork(taskId);  // calls UpdateMsgbusTaskStatus(taskId, Succeeded) at its end
    return NothingDecided;
})"},
    {Rule::WalkRefused, "WALK-REFUSED", "{1} has answered false for every item of every walk until Exit",
     "nothing behind it was told, although the walks answer true", "Answer true to go on.",
     R"(bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) { return false; })",
     R"(bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) { return true; })"},
    {Rule::WalkOfOtherId, "WALK-OF-OTHER-ID", "{1} is asked for \"{2}\"",
     "it tells the policies of another product, or none", "Give the id that EnforcePolicy was given.",
     R"(void Enforcer::EnforcePolicy(const wchar_t*, IPolicyBag* bag) {
    bag->EnumeratePolicies(L"myav__1000", &callbacks);
})",
     R"(void Enforcer::EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) {
    bag->EnumeratePolicies(productId, &callbacks);
})"},
    {Rule::PropertyNull, "PROPERTY-NULL", "SetProperty is given null for the value of {1}",
     "the agent does not get the property", "Give an empty text for no value.",
     R"(set->SetProperty(L"general", L"version", nullptr);)", R"(set->SetProperty(L"general", L"version", L"");)"},
    {Rule::CallbackThrew, "CALLBACK-THREW", "{1} throws {2}{3}",
     "it is answered as a failure, and what was thrown is lost",
     "Catch it in the callback and write it to the module's log.",
     R"(void Collector::CollectProperties(bool, ISet*) { throw std::runtime_error("no licence"); })",
     R"(void Collector::CollectProperties(bool, ISet*) {
    try {
        Collect();
    } catch (const std::exception& error) {
        log(error.what());
    }
})"},
    {Rule::CallbackSlow, "CALLBACK-SLOW", "{2} took {1} ms", "it holds a thread of the agent's for that long",
     "Hand long work to a thread of the module's own.",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) {
    ScanTheWholeDisk();
    return Succeeded;
})",
     R"(int32_t Tasks::ExecuteTask(const wchar_t* taskId, ITaskBag*) {
    StartScan(taskId);
    return NothingDecided;
})"},
    {Rule::SinkSlow, "SINK-SLOW", "Write of its log sink took {1} ms",
     "it holds up whoever writes: the module, the bridge or the agent", "Hand the line to a thread that writes it.",
     R"(void Sink::Write(int, const wchar_t* text) { SendToServer(text); })",
     R"(void Sink::Write(int, const wchar_t* text) { queue.Add(text); })"},
    {Rule::WaitCycle, "WAIT-CYCLE", "{1} waits for thread {2}, which is inside {3} and waits for this one",
     "neither goes on before the limit of 15 seconds",
     "Do not remove or leave inside a callback while another thread does the same the other way round.",
     R"(void First::CollectProperties(bool, ISet*) { VsKitMsgbusRemoveCollectProperties(L"SECOND1000"); }
void Second::CollectProperties(bool, ISet*) { VsKitMsgbusRemoveCollectProperties(L"FIRST_1000"); })",
     R"(void Unload() {
    VsKitMsgbusRemoveCollectProperties(L"FIRST_1000");
    VsKitMsgbusRemoveCollectProperties(L"SECOND1000");
})"},
    {Rule::FailureIgnored, "FAILURE-IGNORED",
     "ExecuteTask answers Succeeded, although {1} inside it answered {2}, a failure",
     "the agent takes the task for done", "Look at the answer; where the task cannot go on, answer Failed.",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) {
    VsKitMsgbusDecryptData(secret, size, out, &outSize, type);
    return Succeeded;
})",
     R"(int32_t Tasks::ExecuteTask(const wchar_t*, ITaskBag*) {
    return VsKitMsgbusDecryptData(secret, size, out, &outSize, type) == 0 ? Succeeded : Failed;
})"},
    {Rule::AgentAbsent, "AGENT-ABSENT",
     "the registry has no key HKEY_LOCAL_MACHINE\\Software\\Corvane\\Agent (error {1})",
     "there is no agent on this machine that could ask a module",
     "Install an agent, or the simulated one: docs/GETTING_STARTED.md shows how.", R"(# a machine without an agent)",
     R"(vsmsgbus::testing::Machine machine;
machine.InstallAgent();)"},
    {Rule::AgentWithoutVersion, "AGENT-WITHOUT-VERSION",
     "the agent's registry key has no value MsgbusVersion, or one that is empty or too long",
     "the bridge takes the agent for not installed", "Repair the agent's installation.",
     R"(# an installation that was not completed)", R"(MsgbusVersion = "5.7.0" (REG_SZ), at most 18 characters)"},
    {Rule::AgentWithoutPath, "AGENT-WITHOUT-PATH",
     "the registry has no value RuntimeSdkPath64 in Software\\Corvane\\Agent\\Applications\\RDXAGENT3000, in the "
     "32-bit view",
     "the bridge cannot find the agent's libraries", "Repair the agent's installation.",
     R"(# a value in the 64-bit view alone)", R"(RuntimeSdkPath64 = "C:\Program Files\Agent" (REG_SZ))"},
    {Rule::AgentLibrary, "AGENT-LIBRARY", "the agent's library {1} cannot be opened: {2}",
     "no call of the agent works that needs it, and the bridge's log has but a number",
     "Repair the agent's installation.", R"(# ny_client.dll without ny_variant.dll beside it)",
     R"(# all four: ny_client.dll, ny_variant.dll, ny_msgbus.dll, ny_logger.dll)"},
    {Rule::AgentExport, "AGENT-EXPORT", "a function of the agent's cannot be reached",
     "what needs it ends with 705: the agent lacks the function or the library, or it was removed meanwhile",
     "Look for AGENT-LIBRARY, and install an agent of the version that the bridge was made for.",
     R"(# an agent of another version)", R"(# the agent that the bridge was made for)"},
};

constexpr bool AreInOrder() {
    for (size_t i = 0; i < std::size(rules); ++i) {
        if (static_cast<size_t>(rules[i].rule) != i) {
            return false;
        }
    }
    return true;
}
static_assert(AreInOrder());

}  // namespace

std::span<const RuleText> AllRules() noexcept {
    return rules;
}

const RuleText& TextOf(Rule rule) noexcept {
    return rules[static_cast<size_t>(rule)];
}

const RuleText* FindRule(const char* name) noexcept {
    const auto* const found = std::find_if(std::begin(rules), std::end(rules),
                                           [&](const RuleText& text) { return std::string_view(text.name) == name; });
    return found != std::end(rules) ? found : nullptr;
}

std::string WithDetails(std::string_view text, std::initializer_list<std::string_view> details) {
    std::string filled;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '{' && i + 2 < text.size() && text[i + 2] == '}') {
            const auto number = static_cast<size_t>(text[i + 1] - '1');
            filled += number < details.size() ? details.begin()[number] : std::string_view();
            i += 2;
        } else {
            filled += text[i];
        }
    }
    return filled;
}

}  // namespace checking
