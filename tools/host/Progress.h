#pragma once

namespace vekhost {

/// How far a load has come, told to whoever shows it: a terminal bar, a viewer's status
/// line. Calls come from the loading thread and, during tessellation, from the mesher's.
class Progress {
public:
    Progress() = default;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    virtual ~Progress();

    /// A phase of the load begins ("reading", "tessellating"); its fraction restarts at zero.
    virtual void phase(const char* name) = 0;
    /// `fraction` of the running phase is done, 0 to 1.
    virtual void update(double fraction) = 0;
};

} // namespace vekhost
