#include "soak/Plan.h"

Operation Plan::Next() {
    const uint32_t choice = random.Below(100);
    if (choice < 10) {
        return ChangeOfAgent();
    }
    if (choice < 40) {
        return ChangeOfProduct();
    }
    if (choice < 90) {
        return ChangeOfRegistration();
    }
    Operation operation{.kind = Operation::Kind::Ask};
    operation.product = random.Below(productCount);
    operation.service = allServices[random.Below(serviceCount)];
    return operation;
}

Operation Plan::ChangeOfAgent() {
    Operation operation;
    operation.isWaitedFor = random.OneIn(2);
    operation.isOlderBuild = random.OneIn(3);
    const bool isRemoved = random.OneIn(3);
    if (!isInstalled) {
        operation.kind = Operation::Kind::Install;
        isInstalled = true;
    } else if (!isRemoved) {
        operation.kind = Operation::Kind::Upgrade;
    } else {
        operation.kind = Operation::Kind::RemoveAgent;
        isInstalled = false;
    }
    return operation;
}

Operation Plan::ChangeOfProduct() {
    Operation operation;
    operation.product = random.Below(productCount);
    for (const Service service : allServices) {
        operation.mask |= random.OneIn(4) ? 0 : MaskOf(service);
    }
    if (random.OneIn(20)) {
        operation.kind = Operation::Kind::LeaveAll;
        entered.reset();
    } else if (random.OneIn(20)) {
        operation.kind = Operation::Kind::LeaveNobody;
    } else if (entered[operation.product] && !random.OneIn(4)) {
        operation.kind = Operation::Kind::Leave;
        entered.reset(operation.product);
    } else {
        operation.kind = Operation::Kind::Enter;
        entered.set(operation.product);
    }
    return operation;
}

// A second registration of an id costs memory by contract, so it is rare.
Operation Plan::ChangeOfRegistration() {
    Operation operation;
    operation.product = random.Below(productCount);
    const uint32_t service = random.Below(serviceCount);
    operation.service = allServices[service];
    const bool isAgain = random.OneIn(50);
    auto&& isRegistered = registered[operation.product][service];
    operation.kind = isRegistered && !isAgain ? Operation::Kind::Remove : Operation::Kind::Set;
    isRegistered = operation.kind == Operation::Kind::Set;
    return operation;
}

std::string TextOf(const Operation& operation) {
    const std::string product = ProductId(operation.product);
    const std::string build = operation.isOlderBuild ? " the older agent" : " the agent";
    const std::string waiting = operation.isWaitedFor ? " and wait" : "";
    switch (operation.kind) {
        case Operation::Kind::Install: return "install" + build + waiting;
        case Operation::Kind::Upgrade: return "upgrade to" + build + waiting;
        case Operation::Kind::RemoveAgent: return "remove the agent" + waiting;
        case Operation::Kind::Enter: return "enter " + product + " for " + std::to_string(operation.mask);
        case Operation::Kind::Leave: return "leave " + product;
        case Operation::Kind::LeaveAll: return "leave all";
        case Operation::Kind::LeaveNobody: return "leave nobody";
        case Operation::Kind::Set: return std::string("set the ") + NameOf(operation.service) + " of " + product;
        case Operation::Kind::Remove: return std::string("remove the ") + NameOf(operation.service) + " of " + product;
        case Operation::Kind::Ask: return std::string("ask the ") + NameOf(operation.service) + " of " + product;
    }
    return "?";
}
