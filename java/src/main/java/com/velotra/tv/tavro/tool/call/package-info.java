/** Single calls of natives: from the words of a user, and with the result as Java sees it. */
package com.velotra.tv.tavro.tool.call;
