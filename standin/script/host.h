// What scripts can see and change: the world behind the interpreter.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standin/script/value.h"

namespace script {

// Every method may throw Error (without a position) when the host refuses: an object that was
// deleted, a track whose keys cannot be counted, a command that the host does not know. Every
// method may also evaluate another text with the same interpreter before it returns.
class Host {
public:
    virtual ~Host() = default;

    // Scene objects, in scene order.
    virtual std::vector<NodeId> Nodes() = 0;
    virtual std::string NodeName(NodeId node) = 0;
    virtual Point3 NodePivot(NodeId node) = 0;
    virtual void SetNodePivot(NodeId node, Point3 pivot) = 0;
    virtual Point3 NodeCenter(NodeId node) = 0;

    // The selection, in selection order; SetSelection replaces it.
    virtual std::vector<NodeId> Selection() = 0;
    virtual void SetSelection(const std::vector<NodeId>& nodes) = 0;

    // The current track view. Tracks and keys count from 1; none reads as undefined.
    virtual int SelectedTrackCount() = 0;
    virtual TrackId SelectedTrack(int index) = 0;
    virtual int KeyCount(TrackId track) = 0;
    virtual Time KeyTime(TrackId track, int key) = 0;
    virtual bool IsKeySelected(TrackId track, int key) = 0;

    virtual Interval AnimationRange() = 0;
    virtual void SetAnimationRange(Interval range) = 0;

    // `actionMan.executeAction`; the identifier is the text as the script gives it. Answers whether
    // the action exists.
    virtual bool ExecuteAction(int table, const std::string& identifier) = 0;
    // `max key mode`: the words in lower case, one blank between them, without `max`.
    virtual void RunMaxCommand(const std::string& words) = 0;
    virtual void ResetAllViews() = 0;
    virtual void CompleteRedraw() = 0;

    // PolyTools. Where they are not loaded their names mean nothing to a script. Sculpt buttons go
    // by the index that the script gives.
    virtual bool HasPolyTools() = 0;
    virtual int SculptTool() = 0;
    virtual int PaintDeformTool() = 0;
    virtual bool IsPolyShiftActive() = 0;
    virtual bool IsSculptButtonOn(int index) = 0;
    virtual void SetSculptButton(int index, bool on) = 0;
    virtual void ToggleTool(int group, int index, bool on) = 0;

    // The mode's name; hosts up to 2012 have none, nor its manager.
    virtual std::optional<std::string> InteractionMode() = 0;

    // Functions registered by plug-ins. Names are given in lower case.
    virtual bool HasPrimitive(const std::string& name) = 0;
    virtual Value CallPrimitive(const std::string& name, const Arguments& arguments) = 0;
};

}  // namespace script
