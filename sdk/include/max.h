#pragma once

// The umbrella of the headers that most plug-ins need.
#include <windows.h>

#include <strbasic.h>
#include <maxtypes.h>
#include <maxheap.h>
#include <strclass.h>
#include <tab.h>
#include <baseinterface.h>
#include <ifnpub.h>
#include <plugapi.h>
#include <plugin.h>
#include <custcont.h>
#include <interval.h>
#include <hold.h>
#include <ref.h>
#include <inode.h>
#include <cmdmode.h>
#include <actiontable.h>
#include <maxapi.h>
