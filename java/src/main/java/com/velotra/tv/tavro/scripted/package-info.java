/** The scripted platform, for tests of Java code that uses the channel lists. */
package com.velotra.tv.tavro.scripted;
