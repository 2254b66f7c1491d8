#pragma once

#include <maxheap.h>
#include <strbasic.h>

// What CommandMode::Class answers.
#define VIEWPORT_COMMAND 1
#define MOVE_COMMAND 2
#define ROTATE_COMMAND 3
#define SCALE_COMMAND 4
#define USCALE_COMMAND 5
#define SQUASH_COMMAND 6
#define SELECT_COMMAND 7
#define HIERARCHY_COMMAND 8
#define CREATE_COMMAND 9
#define MODIFY_COMMAND 10
#define MOTION_COMMAND 11
#define ANIMATION_COMMAND 12
#define CAMERA_COMMAND 13
#define NULL_COMMAND 14
#define DISPLAY_COMMAND 15
#define SPOTLIGHT_COMMAND 16
#define PICK_COMMAND 17
#define MANIPULATE_COMMAND 18
#define PICK_EX_COMMAND 19

// What CommandMode::ID answers; another number line than the classes.
#define CID_OBJMOVE 1
#define CID_OBJROTATE 2
#define CID_OBJSCALE 3
#define CID_OBJUSCALE 4
#define CID_OBJSQUASH 5
#define CID_OBJSELECT 6
#define CID_SUBOBJMOVE 7
#define CID_SUBOBJROTATE 8
#define CID_SUBOBJSCALE 9
#define CID_SUBOBJUSCALE 10
#define CID_SUBOBJSQUASH 11
#define CID_SUBOBJSELECT 12
#define CID_UNFREEZE 13
#define CID_UNHIDE 14
#define CID_LINK 100
#define CID_BINDWSM 110
#define CID_ZOOMVIEW 200
#define CID_ZOOMREGION 201
#define CID_PANVIEW 202
#define CID_ROTATEVIEW 203
#define CID_ZOOMALL 204
#define CID_RNDREGION 205
#define CID_CAMFOV 210
#define CID_CAMDOLLY 211
#define CID_CAMPERSP 212
#define CID_CAMTRUCK 213
#define CID_CAMROTATE 214
#define CID_CAMROLL 215
#define CID_PLAYANIMATION 300
#define CID_SIMPLECREATE 400
#define CID_MODIFYPARAM 500
#define CID_EDITSOFTSELECTION 525
#define CID_NULL 600
#define CID_PICKAXISOBJECT 700
#define CID_STDPICK 710
#define CID_GRP_ATTACH 800
#define CID_ASSEMBLY_ATTACH 810
#define CID_MANIPULATE 900
#define CID_USER 0xFFFF

#define TRANSFORM_CMD_SUPER 1

class CommandMode : public MaxHeapOperators {
public:
    virtual ~CommandMode() {}
    virtual int Class() = 0;
    virtual int SuperClass() { return 0; }
    virtual int ID() = 0;
    SDK_SLOTS_5(CommandMode, 4, 5, 6, 7, 8)
};
