/** What the user wants to compare, and the differences as text and as JSON. */
package com.velotra.tv.tavro.tool.comparing;
