/* An extension of CMPI: a server's promise about results, for providers that would otherwise keep them all.
 */
#ifndef CMPIRESULTS_H
#define CMPIRESULTS_H

/*
 * Name of a boolean entry in the context of a call. Where it is true the server is done with a result when
 * the function that returns it (returnInstance, returnObjectPath, returnData) is; the provider may then
 * release the objects it made for it, with mark and release of the memory services, before its own function
 * returns. Without the entry a server may keep the pointer of an operation's one result until then; where
 * there may be many, a provider can only release one by one the objects it made.
 */
#define CMPIResultsAreCopied "ResultsAreCopied"

#endif
