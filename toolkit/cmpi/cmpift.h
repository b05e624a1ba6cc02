/* CMPI: the main header; types and all function tables. */
#ifndef CMPIFT_H
#define CMPIFT_H

#include "cmpibroker.h"
#include "cmpidt.h"
#include "cmpimi.h"
#include "cmpiobj.h"
#include "cmpios.h"
#include "cmpipl.h"
#include "cmpiquery.h"

#ifdef __cplusplus
#include "cmpiabi.h"
#endif

#endif
