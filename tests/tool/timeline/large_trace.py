#!/usr/bin/env python3
"""large_trace.py FILE: writes a trace of 100,000 spans and instants as the checking bridge writes them: an agent that asks two products again
and again for hours, on many threads, with findings, refusals, failed calls and one call that never ends. Each run writes
the same.
"""
import json
import random
import sys

PROCESS = 4711
SPANS_AND_INSTANTS = 100_000


class Trace:
    def __init__(self, file):
        self.file = file
        self.random = random.Random(20)
        self.count = 0
        self.file.write("[\n")

    def add(self, phase, name, time, thread, /, **arguments):
        event = {"name": name, "ph": phase, "ts": round(time, 3), "pid": PROCESS, "tid": thread}
        if phase == "i":
            event["s"] = "t"
        if arguments:
            event["args"] = arguments
        self.file.write(json.dumps(event, ensure_ascii=False, separators=(",", ":")) + ",\n")
        self.count += phase != "E"

    def span(self, name, time, duration, thread, /, answer=None, **arguments):
        self.add("B", name, time, thread, **arguments)
        self.add("E", name, time + duration, thread, **({} if answer is None else {"answer": answer}))
        return time + duration

    def log(self, time, thread, text):
        return self.span("Write", time, self.random.uniform(5, 60), thread, product="LARGE___1000", level=3, text=text)

    def collection(self, time, thread, product):
        self.add("B", "CollectProperties", time, thread, product=product)
        for number in range(self.random.randint(4, 12)):
            time += self.random.expovariate(1 / 40)
            value = f"{self.random.randint(1, 20000)} MiB"
            time = self.span("SetProperty", time, self.random.uniform(8, 30), thread, path="Hardware", name=f"Disk {number}",
                             value=value, answer=self.random.random() > 0.002)
        self.add("E", "CollectProperties", time + 20, thread)
        return self.span("GetLogLevel", time + 25, 7, thread, product=product, answer=0)

    def policies(self, time, thread, product):
        self.add("B", "EnforcePolicy", time, thread, product=product)
        self.add("B", "EnumeratePolicies", time + 90, thread, product=product)
        time += 130
        for policy in range(self.random.randint(1, 5)):
            time = self.span("OnContainer", time, 20, thread, first="ENDP_AV__1000", second="QTP_General_Policies",
                             third="General", fourth=f"Policy {policy} für Zürich")
            for setting in range(self.random.randint(2, 9)):
                time = self.span("OnSetting", time + 10, self.random.uniform(5, 40), thread, first="OnAccess",
                                 second=f"Setting{setting}", third=str(self.random.randint(0, 100)))
        self.add("E", "EnumeratePolicies", time + 30, thread)
        if self.random.random() < 0.05:
            time = self.log(time + 40, thread, "NY log message, [ny_policy] no such value, error <2>")
        time += 40 + self.random.expovariate(1 / 2000)
        self.add("E", "EnforcePolicy", time, thread)
        return time + 10

    def task(self, time, thread, product):
        name = f"scan-{self.random.randint(1, 40)}"
        self.add("B", "ExecuteTask", time, thread, product=product, task=name)
        for _ in range(self.random.randint(1, 6)):
            time += self.random.expovariate(1 / 200_000)
            time = self.span("UpdateMsgbusTaskStatus", time, 40, thread, task=name, status=6)
        answer = 3 if self.random.random() < 0.05 else 4
        self.add("E", "ExecuteTask", time + 500, thread, answer=answer)
        return time + 600

    def crypto(self, time, thread):
        fails = self.random.random() < 0.03
        self.add("B", "VsKitMsgbusEncryptData", time, thread, size=self.random.randint(10, 4000))
        if fails:
            self.add("i", "the agent refuses", time + 50, thread, code=705)
        self.add("E", "VsKitMsgbusEncryptData", time + 90, thread, answer=-1 if fails else 0)
        return time + 100


def main():
    with open(sys.argv[1], "w", encoding="utf-8", newline="\n") as file:
        trace = Trace(file)
        free = {thread: 60_560_773_765.5 for thread in range(2000, 2096, 4)}
        main_thread = 1996
        trace.span("VsMsgbusEntry", min(free.values()) - 5000, 4000, main_thread, product="LARGE___1000", mask=14592, answer=1)
        trace.span("agent client starts", min(free.values()) - 900, 800, 1992)
        while trace.count < SPANS_AND_INSTANTS - 3:
            thread = trace.random.choice(list(free))
            product = trace.random.choice(["LARGE___1000", "OTHER___1000"])
            time = free[thread] + trace.random.expovariate(1 / 90_000_000)
            what = trace.random.choices([trace.collection, trace.policies, trace.task], weights=[5, 3, 1])[0]
            time = what(time, thread, product)
            if trace.random.random() < 0.3:
                time = trace.crypto(time, thread)
            if trace.random.random() < 0.01:
                trace.add("B", "UpdateMsgbusTaskStatus", time + 20, thread, task="scan-1", status=50)
                trace.add("i", "finding", time + 25, thread, rule="TASK-STATUS", product=product)
                trace.add("E", "UpdateMsgbusTaskStatus", time + 90, thread)
                time += 100
            free[thread] = time
        last = max(free.values())
        trace.add("B", "VsMsgbusExit", last + 10, main_thread, product="LARGE___1000")
        trace.add("i", "finding", last + 2000, main_thread, rule="EXIT-WHILE-CALLED", product="LARGE___1000")
        trace.add("i", "library closed", last + 30_000_000, 1992)


if __name__ == "__main__":
    main()
