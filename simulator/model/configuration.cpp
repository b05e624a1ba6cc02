// What of a fabric is the configuration of its local switch.
#include "simulator/model/configuration.h"

#include "simulator/model/hex.h"

#include <algorithm>

namespace simulator
{
namespace
{

std::size_t localIndex(const Scenario& fabric)
{
    const auto& all = fabric.switches;
    const auto found = std::find_if(all.begin(), all.end(), [](const auto& one) { return one.local; });
    if (found == all.end())
        throw ScenarioError("/switches", "expected a switch with \"local\": true");
    return static_cast<std::size_t>(found - all.begin());
}

} // namespace

const SwitchScenario& localSwitchOf(const Scenario& fabric)
{
    return fabric.switches[localIndex(fabric)];
}

void configureAs(SwitchScenario& one, const SwitchScenario& model)
{
    one.name = model.name;
    // Only a changed state acts, as when a configuration record is written.
    if (one.configuredAdminState != model.configuredAdminState)
        one.adminState = one.configuredAdminState = model.configuredAdminState;
    one.transparent = model.transparent;
    one.preferredDomain = model.preferredDomain != 0 ? model.preferredDomain : one.domain;
    one.domainLocked = model.domainLocked;
    one.principalPriority = model.principalPriority;
    if (!model.reserved.empty())
        one.reserved = model.reserved;
    one.location = model.location;
    one.ipAddress = model.ipAddress;
    one.services = model.services;
    one.logEnabled = model.logEnabled;
}

void configureAs(PortScenario& one, const PortScenario& model)
{
    one.name = model.name;
    one.adminState = model.adminState;
    one.type = model.type;
    one.speed = model.speed;
    one.rscn = model.rscn;
    one.autoPerfTuning = model.autoPerfTuning;
    one.mfs = model.mfs;
    one.lcf = model.lcf;
    one.vi = model.vi;
    one.scan = model.scan;
    one.maxCredit = model.maxCredit;
    one.primaryTfPorts = model.primaryTfPorts;
    one.backupTfPorts = model.backupTfPorts;
    if (!model.reserved.empty())
        one.reserved = model.reserved;
}

Scenario configurationOf(const Scenario& fabric)
{
    const SwitchScenario& local = localSwitchOf(fabric);
    Scenario image;
    image.seed = fabric.seed;
    image.zoning = fabric.zoning;
    SwitchScenario& one = image.switches.emplace_back();
    one.local = true;
    one.domain = local.domain;
    one.wwn = local.wwn;
    configureAs(one, local);
    for (const PortScenario& port : local.ports)
    {
        PortScenario& copy = one.ports.emplace_back();
        copy.number = port.number;
        copy.speedCapability = port.speedCapability; // which the configured speed is checked against
        configureAs(copy, port);
    }
    return image;
}

Scenario withConfiguration(Scenario fabric, const Scenario& image)
{
    const SwitchScenario& model = localSwitchOf(image);
    SwitchScenario& local = fabric.switches[localIndex(fabric)];
    if (lowerCase(model.wwn) != lowerCase(local.wwn))
    {
        throw ScenarioError("/switches/" + std::to_string(localIndex(image)) + "/wwn",
                            "expected the image of " + local.wwn + ", got that of " + model.wwn);
    }
    configureAs(local, model);
    for (const PortScenario& port : model.ports)
    {
        const auto found =
            std::find_if(local.ports.begin(),
                         local.ports.end(),
                         [&port](const PortScenario& own) { return own.number == port.number; });
        if (found == local.ports.end())
        {
            throw ScenarioError("/switches/" + std::to_string(localIndex(image)) + "/ports",
                                "the switch has no port " + std::to_string(port.number));
        }
        configureAs(*found, port);
    }
    const ZoningLimits limits = fabric.zoning.limits;
    fabric.zoning = image.zoning;
    fabric.zoning.limits = limits;
    validate(fabric);
    return fabric;
}

} // namespace simulator
